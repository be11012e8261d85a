#pragma once

#include <opencv2/objdetect.hpp>

#include "tools/video/vision/PersonDetector.h"

namespace fyn::productionrules::video {

/** Upright persons whose whole body is in view, by histograms of oriented gradients. Needs no model file. */
class HogDetector final : public PersonDetector {
 public:
  HogDetector();

  std::vector<Detection> detect(const cv::Mat& picture, std::size_t camera, std::int64_t frame) override;

 private:
  cv::HOGDescriptor mDescriptor;
  cv::Mat mScaled;
};

}  // namespace fyn::productionrules::video
