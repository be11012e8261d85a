#include "tools/video/camera/LiveShow.h"

namespace fyn::productionrules::video {

void LiveShow::take(const FrameTime& taken) {
  Waiting waiting{{taken, {}}, {}};
  for (const cv::Mat& picture : player().pictures()) {
    // The reader fills its own again while this one waits.
    waiting.pictures.push_back(delayMs() > 0 ? picture.clone() : picture);
  }
  add(std::move(waiting));
  while (isDue()) {
    showDue();
  }
}

void LiveShow::show(const Waiting& waiting, std::optional<std::int64_t> nextMs) {
  player().present({waiting.frame.time, mHeads}, waiting.pictures, nextMs);
}

}  // namespace fyn::productionrules::video
