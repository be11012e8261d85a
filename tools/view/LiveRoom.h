#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "platform/LogSink.h"
#include "platform/Mutex.h"
#include "platform/PubSub.h"
#include "platform/Topics.h"
#include "tools/view/ViewLine.h"

namespace fyn::productionrules {

/** Turns the messages of a live bus into lines. As the log of the bus client it makes notices of what that
 * has to say; lines of others are dropped. */
class LiveRoom final : public com::quil::pubsub::IPubSubListener, public LogSink {
 public:
  /** What it wants to be subscribed to. */
  static constexpr std::array kTopics{topics::kVisionResult, topics::kCameraParameters,
                                      topics::kCamera,       topics::kCameras,
                                      topics::kCameraMoved,  topics::kControl,
                                      topics::kDebugLog,     topics::kScene,
                                      topics::kDebugScene,   topics::kSecondaryScene,
                                      topics::kTimerDebug,   topics::kPeopleCount,
                                      topics::kDecisions,    kStatusTopic};

  /** `clock` gives milliseconds that do not decrease; the first call is time 0. `sink` must outlive this. */
  LiveRoom(LineSink& sink, std::function<std::int64_t()> clock);

  /** Called on any thread. */
  void onMessage(const std::string& topic, const std::string& message) override;
  void write(LogPriority priority, const char* tag, const char* text) override;

 private:
  ViewLine lineOf(std::int64_t t, const std::string& topic, const std::string& message) const;

  LineSink& mSink;
  const std::function<std::int64_t()> mClock;
  const std::int64_t mStart;
  /** One message after the other reaches the sink. */
  Mutex mMutex;
};

}  // namespace fyn::productionrules
