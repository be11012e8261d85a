#include "tools/video/camera/DelayedShow.h"

#include <stdexcept>
#include <utility>

#include "platform/VisionSettings.h"

namespace fyn::productionrules::video {

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
