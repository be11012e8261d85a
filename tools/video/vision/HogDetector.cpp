#include "tools/video/vision/HogDetector.h"

#include <cmath>
#include <opencv2/imgproc.hpp>

#include "model/Geometry.h"

namespace fyn::productionrules::video {

namespace {

// The trained window is 64 x 128 pixels and the person in it 32 x 96.
constexpr double kMarginX = 0.25;
constexpr double kMarginY = 0.125;

const cv::Size kStep(8, 8);
const cv::Size kPadding(8, 8);
// Steps of 1.08 find a tenth more and take two thirds more time.
constexpr double kBodyScaleStep = 1.15;
// The distance from the deciding plane below which too much is found that is none.
constexpr double kLeastWeight = 0.2;

/** Weights have no bound; 0 is even odds. */
double scoreOf(double weight) {
  return 1.0 / (1.0 + std::exp(-2.0 * weight));
}

}  // namespace

HogDetector::HogDetector() {
  mDescriptor.setSVMDetector(cv::HOGDescriptor::getDefaultPeopleDetector());
}

std::vector<Detection> HogDetector::detect(const cv::Mat& picture, std::size_t /*camera*/,
                                           std::int64_t /*frame*/) {
  cv::resize(picture, mScaled, {kOutputSize.width, kOutputSize.height}, 0, 0, cv::INTER_LINEAR);
  std::vector<cv::Rect> windows;
  std::vector<double> weights;
  mDescriptor.detectMultiScale(mScaled, windows, weights, kLeastWeight, kStep, kPadding, kBodyScaleStep);
  std::vector<Detection> found;
  for (std::size_t index = 0; index < windows.size(); ++index) {
    const cv::Rect2d window = windows[index];
    const cv::Rect2d body(window.x + kMarginX * window.width, window.y + kMarginY * window.height,
                          (1 - 2 * kMarginX) * window.width, (1 - 2 * kMarginY) * window.height);
    Detection detection;
    detection.box = headOfBody(body);
    detection.score = scoreOf(weights[index]);
    found.push_back(detection);
  }
  return found;
}

}  // namespace fyn::productionrules::video
