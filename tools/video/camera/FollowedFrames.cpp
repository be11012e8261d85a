#include "tools/video/camera/FollowedFrames.h"

#include <stdexcept>

#include "platform/VisionSettings.h"

namespace fyn::productionrules::video {

namespace {

// A picture this late is of no use to somebody who looks.
constexpr std::int64_t kTooLateMs = 500;
// Only timestamps that stand still let so many wait.
constexpr std::size_t kMostWaiting = 1000;

}  // namespace

void FollowedFrames::handle(const Arrival& arrival) {
  switch (arrival.kind) {
    case Arrival::Kind::visionResult:
      handleResult(arrival.text);
      break;
    case Arrival::Kind::sceneFromService:
      mServed = true;
      mPlayer.addScene(arrival.text);
      break;
    case Arrival::Kind::sceneFromBus:
      if (!mServed) {
        mPlayer.addScene(arrival.text);
      }
      break;
    case Arrival::Kind::nothing:
      break;
  }
}

void FollowedFrames::handleResult(const std::string& text) {
  try {
    mWaiting.push_back(parseVisionFrame(text));
  } catch (const std::invalid_argument& fault) {
    PRB_LOGW(kCameraTag, "%s", fault.what());
    return;
  }
  const std::int64_t latest = mWaiting.back().time.timestampMs;
  mPlayer.frameTaken(mWaiting.back().time);
  while (!mWaiting.empty() &&
         (mWaiting.front().time.timestampMs + mDelayMs <= latest || mWaiting.size() > kMostWaiting)) {
    const bool isTooLate = mWaiting.front().time.timestampMs + mDelayMs + kTooLateMs < latest;
    if (isTooLate && mPlayer.mayLeaveOut()) {
      mWaiting.pop_front();
    } else {
      showFirst();
    }
  }
}

void FollowedFrames::showFirst() {
  const VisionFrame frame = mWaiting.front();
  mWaiting.pop_front();
  mPlayer.show(frame, mWaiting.empty() ? std::nullopt
                                       : std::optional<std::int64_t>(mWaiting.front().time.timestampMs));
}

void FollowedFrames::finish() {
  while (!mWaiting.empty()) {
    showFirst();
  }
}

}  // namespace fyn::productionrules::video
