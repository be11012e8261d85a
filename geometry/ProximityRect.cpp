#include "geometry/ProximityRect.h"

#include <algorithm>

#include "config/PrConfig.h"
#include "geometry/RectMath.h"
#include "platform/VisionSettings.h"

namespace fyn::productionrules {

namespace {

float shareOf(std::int32_t length, std::int32_t percent) {
  return toFloat(length) * toFloat(percent) / 100.0F;
}

// A span that sticks out at both ends is shifted from the far end only.
void shiftInside(std::int32_t& low, std::int32_t& high, std::int32_t size) {
  if (high > size) {
    low = wrapSub(wrapAdd(low, size), high);
    high = size;
  } else if (low < 0) {
    high = wrapSub(high, low);
    low = 0;
  }
}

}  // namespace

Rect getProxTriggerRect(const Rect& head, const Dimension& image) {
  const PrConfig& config = PrConfig::get();
  const float side = shareOf(widthOf(head), config.proximityTriggerSide);
  const float up = shareOf(heightOf(head), config.proximityTriggerTop);
  const float down = shareOf(heightOf(head), config.proximityTriggerBottom);
  return Rect{std::max(truncate(toFloat(head.left) - side), 0), std::max(truncate(toFloat(head.top) - up), 0),
              std::min(image.width, truncate(side + toFloat(head.right))),
              std::min(image.height, truncate(down + toFloat(head.bottom)))};
}

Rect getProximitySquare(const Rect& head, const Dimension& image) {
  Rect square = head;
  if (widthOf(head) < heightOf(head)) {
    square.right = wrapAdd(head.left, heightOf(head));
  } else {
    square.bottom = wrapAdd(head.top, widthOf(head));
  }
  // Re-centred horizontally only; kept: frames must land on the same pixels.
  const std::int32_t shift =
      wrapSub(halve(wrapAdd(head.left, square.right)), halve(wrapAdd(head.left, head.right)));
  square.left = wrapSub(square.left, shift);
  square.right = wrapSub(square.right, shift);

  shiftInside(square.left, square.right, image.width);
  shiftInside(square.top, square.bottom, image.height);
  PRB_LOGD("FramingUtil", "%s myHeadBound[ %d, %d, %d, %d], result[ %d, %d, %d, %d]", __func__, head.left,
           head.top, head.right, head.bottom, square.left, square.top, square.right, square.bottom);
  return square;
}

}  // namespace fyn::productionrules
