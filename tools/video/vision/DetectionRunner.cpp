#include "tools/video/vision/DetectionRunner.h"

namespace fyn::productionrules::video {

void DetectionRunner::begin(const std::vector<cv::Mat>& pictures, std::int64_t frame, std::int64_t ms) {
  std::vector<cv::Mat> own;
  own.reserve(pictures.size());
  for (const cv::Mat& picture : pictures) {
    // The reader fills its picture again while the detector looks at this one.
    own.push_back(mInBackground ? picture.clone() : picture);
  }
  const auto look = [this, frame, ms, own = std::move(own)] {
    DetectedFrame found{ms, {}};
    for (std::size_t camera = 0; camera < own.size(); ++camera) {
      found.heads.push_back(mDetector->detect(own[camera], camera, frame));
    }
    return found;
  };
  mRunning = std::async(mInBackground ? std::launch::async : std::launch::deferred, look);
}

std::optional<DetectedFrame> DetectionRunner::take() {
  if (!mRunning.valid() || mRunning.wait_for(std::chrono::seconds(0)) == std::future_status::timeout) {
    return std::nullopt;
  }
  return mRunning.get();
}

}  // namespace fyn::productionrules::video
