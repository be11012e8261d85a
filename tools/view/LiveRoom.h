#pragma once

#include <array>
#include <functional>
#include <string>
#include <string_view>

#include "platform/Mutex.h"
#include "platform/LogSink.h"
#include "platform/PubSub.h"
#include "platform/Topics.h"
#include "tools/view/ShadowService.h"

namespace fyn::productionrules {

/** Turns the messages of a live bus into lines, and gives them to a shadow that tells why. As the log of the
 * bus client it makes notices of what that has to say; lines of others are dropped. */
class LiveRoom final : public com::quil::pubsub::IPubSubListener, public LogSink {
 public:
  /** What it wants to be subscribed to. */
  static constexpr std::array kTopics{
      topics::kVisionResult, topics::kCameraParameters, topics::kCamera,     topics::kCameras,
      topics::kCameraMoved,  topics::kControl,          topics::kDebugLog,   topics::kScene,
      topics::kDebugScene,   topics::kSecondaryScene,   topics::kTimerDebug, topics::kPeopleCount};

  /** `clock` gives milliseconds that do not decrease; the first call is time 0. `sink` must outlive this. */
  LiveRoom(LineSink& sink, std::function<std::int64_t()> clock, ShadowSettings settings);

  /** Called on any thread. */
  void onMessage(const std::string& topic, const std::string& message) override;
  void write(LogPriority priority, const char* tag, const char* text) override;

 private:
  LineSink& mSink;
  const std::function<std::int64_t()> mClock;
  const std::int64_t mStart;
  Mutex mMutex;
  ShadowService mShadow PR_GUARDED_BY(mMutex);
};

}  // namespace fyn::productionrules
