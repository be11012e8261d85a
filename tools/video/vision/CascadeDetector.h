#pragma once

#include <opencv2/objdetect.hpp>
#include <string>

#include "tools/video/vision/PersonDetector.h"

namespace fyn::productionrules::video {

/** Faces from the front and from both sides, by cascades of Haar features. */
class CascadeDetector final : public PersonDetector {
 public:
  /** `folder` holds the cascades of OpenCV's data package. Raises UsageError when they are not there. */
  explicit CascadeDetector(const std::string& folder);

  std::vector<Detection> detect(const cv::Mat& picture, std::size_t camera, std::int64_t frame) override;

 private:
  cv::CascadeClassifier mFront;
  cv::CascadeClassifier mSide;
  cv::Mat mGrey;
  cv::Mat mMirrored;
};

}  // namespace fyn::productionrules::video
