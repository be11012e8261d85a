#include "tools/video/camera/FollowedFrames.h"

#include <utility>

namespace fyn::productionrules::video {

namespace {

// A picture this late is of no use to somebody who looks.
constexpr std::int64_t kTooLateMs = 500;
// Only timestamps that stand still let so many wait.
constexpr std::size_t kMostWaiting = 1000;

}  // namespace

void FollowedFrames::handleResult(VisionFrame result) {
  const FrameTime latest = result.time;
  waiting().push_back({std::move(result), {}});
  player().frameTaken(latest);
  const auto dueMs = [this] { return waiting().front().frame.time.timestampMs + delayMs(); };
  while (!waiting().empty() && (dueMs() <= latest.timestampMs || waiting().size() > kMostWaiting)) {
    if (dueMs() + kTooLateMs < latest.timestampMs && player().mayLeaveOut()) {
      waiting().pop_front();
    } else {
      showFirst();
    }
  }
}

}  // namespace fyn::productionrules::video
