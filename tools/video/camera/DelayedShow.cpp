#include "tools/video/camera/DelayedShow.h"

#include <stdexcept>
#include <utility>

#include "platform/VisionSettings.h"

namespace fyn::productionrules::video {

namespace {

// Pictures this late are of no use to somebody who looks when there are newer ones.
constexpr std::int64_t kTooLateMs = 50;
// Of 1920 x 1080 they fill 600 MB; only long delays at high rates, or a clock that stands still, let so many
// wait.
constexpr std::size_t kMostWaiting = 100;

}  // namespace

void DelayedShow::handle(const Arrival& arrival) {
  switch (arrival.kind) {
    case Arrival::Kind::visionResult:
      try {
        handleResult(parseVisionFrame(arrival.text));
      } catch (const std::invalid_argument& fault) {
        PRB_LOGW(kCameraTag, "%s", fault.what());
      }
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

void DelayedShow::add(Waiting taken) {
  mNewestMs = taken.frame.time.timestampMs;
  mPlayer.frameTaken(taken.frame.time);
  mWaiting.push_back(std::move(taken));
  if (mWaiting.size() > kMostWaiting) {
    isDue() ? showDue() : showFirst();
  }
}

std::int64_t DelayedShow::lateMs(std::size_t index) const {
  return mNewestMs - mWaiting[index].frame.time.timestampMs - mDelayMs;
}

bool DelayedShow::isDue(std::size_t index) const {
  // A clock that is set back must not hold them up.
  return index < mWaiting.size() && (lateMs(index) >= 0 || lateMs(index) < -mDelayMs);
}

void DelayedShow::showDue() {
  while (mPlayer.mayLeaveOut() && isDue(1) && lateMs(0) > kTooLateMs) {
    mWaiting.pop_front();
  }
  if (isDue()) {
    showFirst();
  }
}

void DelayedShow::showFirst() {
  const Waiting first = std::move(mWaiting.front());
  mWaiting.pop_front();
  show(first, mWaiting.empty() ? std::nullopt
                               : std::optional<std::int64_t>(mWaiting.front().frame.time.timestampMs));
}

void DelayedShow::finish(std::chrono::steady_clock::time_point end) {
  while (!mWaiting.empty() && std::chrono::steady_clock::now() < end) {
    showFirst();
  }
}

}  // namespace fyn::productionrules::video
