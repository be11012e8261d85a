#include "benchmarks/FaceBoxCropper.h"

#include <algorithm>
#include <cmath>

namespace fyn::productionrules::bench {

namespace {

// The usual settings: the faces take half of the crop's height, and a crop follows within about a second of
// 30 frames.
constexpr double kMargin = 2;
constexpr double kCentreStep = 0.1;
constexpr double kSizeStep = 0.05;

}  // namespace

Rect FaceBoxCropper::crop(const std::vector<Rect>& faces) {
  double centreX = kImageWidth / 2;
  double centreY = kImageHeight / 2;
  double height = kImageHeight;
  if (!faces.empty()) {
    Rect all = faces.front();
    for (const Rect& face : faces) {
      all = {std::min(all.left, face.left), std::min(all.top, face.top), std::max(all.right, face.right),
             std::max(all.bottom, face.bottom)};
    }
    const double width = all.right - all.left;
    centreX = all.left + width / 2;
    centreY = all.top + (all.bottom - all.top) / 2.0;
    height = std::min(kImageHeight,
                      kMargin * std::max<double>(all.bottom - all.top, width * kImageHeight / kImageWidth));
  }
  mCentreX.step(centreX, kCentreStep);
  mCentreY.step(centreY, kCentreStep);
  mHeight.step(height, kSizeStep);
  const double halfHeight = mHeight.value / 2;
  const double halfWidth = halfHeight * kImageWidth / kImageHeight;
  const double x = std::clamp(mCentreX.value, halfWidth, kImageWidth - halfWidth);
  const double y = std::clamp(mCentreY.value, halfHeight, kImageHeight - halfHeight);
  const auto pixel = [](double value) { return static_cast<int>(std::lround(value)); };
  return {pixel(x - halfWidth), pixel(y - halfHeight), pixel(x + halfWidth), pixel(y + halfHeight)};
}

}  // namespace fyn::productionrules::bench
