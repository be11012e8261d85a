#include "tools/video/camera/LiveShow.h"

namespace fyn::productionrules::video {

void LiveShow::take(const FrameTime& taken) {
  player().frameTaken(taken);
  waiting().push_back({{taken, {}}, {}});
  for (const cv::Mat& picture : player().pictures()) {
    // The reader fills its own again while this one waits.
    waiting().back().pictures.push_back(delayMs() > 0 ? picture.clone() : picture);
  }
  // A clock that is set back must not let pictures pile up.
  const auto isDue = [&](std::int64_t ms) {
    return ms + delayMs() <= taken.timestampMs || ms > taken.timestampMs;
  };
  while (!waiting().empty() && isDue(waiting().front().frame.time.timestampMs)) {
    showFirst();
  }
}

void LiveShow::show(const Waiting& waiting, std::optional<std::int64_t> nextMs) {
  player().present({waiting.frame.time, mHeads}, waiting.pictures, nextMs);
}

}  // namespace fyn::productionrules::video
