#pragma once

#include <array>
#include <chrono>
#include <string>
#include <string_view>

#include "platform/Mutex.h"
#include "platform/PubSub.h"
#include "platform/Topics.h"

namespace fyn::productionrules {

/** Learns from a service's messages in which mode it is. */
class ModeWitness final : public com::quil::pubsub::IPubSubListener {
 public:
  /** The topics that it wants. */
  static constexpr std::array<std::string_view, 3> kTopics{topics::kTrackingMode, topics::kScene,
                                                           topics::kVisionResult};

  /** `wanted` is the mode as messages name it. */
  explicit ModeWitness(std::string wanted) : mWanted(std::move(wanted)) {}

  void onMessage(const std::string& topic, const std::string& message) override;

  /** Whether the service says within `limit` that it is in the wanted mode, or its last picture was in it. */
  bool waitForMode(std::chrono::milliseconds limit);

  /** The mode that the service was in last, for people. */
  std::string mode() const;

  bool sawResults() const;

 private:
  const std::string mWanted;
  mutable Mutex mMutex;
  std::string mMode PR_GUARDED_BY(mMutex) = "another mode";
  bool mSawResults PR_GUARDED_BY(mMutex) = false;
};

}  // namespace fyn::productionrules
