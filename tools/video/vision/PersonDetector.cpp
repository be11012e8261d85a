#include "tools/video/vision/PersonDetector.h"

#include "model/Geometry.h"

namespace fyn::productionrules::video {

namespace {

// A grown person is seven and a half heads tall; a head is four fifths as wide as it is high.
constexpr double kHeadsPerBody = 7.5;
constexpr double kHeadShape = 0.8;

}  // namespace

cv::Rect2d inReference(const cv::Rect2d& box, const cv::Size& from) {
  const double x = static_cast<double>(kOutputSize.width) / from.width;
  const double y = static_cast<double>(kOutputSize.height) / from.height;
  return {box.x * x, box.y * y, box.width * x, box.height * y};
}

cv::Rect2d headOfBody(const cv::Rect2d& body) {
  const double height = body.height / kHeadsPerBody;
  const double width = height * kHeadShape;
  return {body.x + (body.width - width) / 2, body.y, width, height};
}

}  // namespace fyn::productionrules::video
