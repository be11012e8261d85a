#include "tools/video/camera/LiveShow.h"

#include <stdexcept>

#include "platform/VisionSettings.h"

namespace fyn::productionrules::video {

void LiveShow::handle(const Arrival& arrival) {
  switch (arrival.kind) {
    case Arrival::Kind::visionResult:
      try {
        mHeads = parseVisionFrame(arrival.text).heads;
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

void LiveShow::take(const FrameTime& taken) {
  mPlayer.frameTaken(taken);
  mWaiting.push_back({taken, {}});
  for (const cv::Mat& picture : mPlayer.pictures()) {
    // The reader fills its own again while this one waits.
    mWaiting.back().pictures.push_back(mDelayMs > 0 ? picture.clone() : picture);
  }
  // A clock that is set back must not let pictures pile up.
  const auto isDue = [&](std::int64_t ms) {
    return ms + mDelayMs <= taken.timestampMs || ms > taken.timestampMs;
  };
  while (!mWaiting.empty() && isDue(mWaiting.front().time.timestampMs)) {
    showFirst();
  }
}

void LiveShow::showFirst() {
  const Waiting first = std::move(mWaiting.front());
  mWaiting.pop_front();
  mPlayer.present(
      {first.time, mHeads}, first.pictures,
      mWaiting.empty() ? std::nullopt : std::optional<std::int64_t>(mWaiting.front().time.timestampMs));
}

void LiveShow::finish() {
  while (!mWaiting.empty()) {
    showFirst();
  }
}

}  // namespace fyn::productionrules::video
