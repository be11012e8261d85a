#include "geometry/Overlap.h"

#include <algorithm>
#include <cmath>

#include "geometry/RectMath.h"

namespace fyn::productionrules {

double calculateArea(const Rect& rect) {
  const double height = wrapSub(rect.top, rect.bottom);
  const double width = widthOf(rect);
  return std::fabs(height) * std::fabs(width);
}

double getOverlappingArea(const Rect& a, const Rect& b) {
  const double x = static_cast<double>(std::min(a.right, b.right)) - std::max(a.left, b.left);
  // Height of the union, not of the common part; kept: frames must land on the same pixels.
  const double y = static_cast<double>(std::min(a.top, b.top)) - std::max(a.bottom, b.bottom);
  if (x == 0.0 || y == 0.0) {
    return 0.0;
  }
  return std::fabs(x) * std::fabs(y);
}

float getOverlap(const Rect& a, const Rect& b) {
  const bool aIsLeft = a.left < b.left;
  const bool aIsUpper = a.top < b.top;
  const Rect& leftmost = aIsLeft ? a : b;
  const Rect& other = aIsLeft ? b : a;
  const Rect& upper = aIsUpper ? a : b;
  const Rect& lower = aIsUpper ? b : a;

  // Not clipped to the other's extent, no guard for an empty area; kept: frames must land on the same pixels.
  const std::int32_t width = std::max(wrapSub(leftmost.right, other.left), 0);
  const std::int32_t height = std::max(wrapSub(upper.bottom, lower.top), 0);
  return toFloat(wrapMul(width, height)) / toFloat(areaOf(leftmost));
}

float getSizeDelta(const Rect& a, const Rect& b) {
  const std::int32_t areaA = areaOf(a);
  const std::int32_t areaB = areaOf(b);
  if (areaA == 0 || areaB == 0) {
    return 0.0F;
  }
  return std::fabs(toFloat(wrapSub(areaA, areaB))) / toFloat(std::max(areaA, areaB));
}

double getIntersectionOverUnion(const Rect& a, const Rect& b) {
  // Doubles hold every product of two 32-bit differences well enough, and none of them wraps.
  const auto area = [](double left, double top, double right, double bottom) {
    return std::max(right - left, 0.0) * std::max(bottom - top, 0.0);
  };
  const double both = area(std::max(a.left, b.left), std::max(a.top, b.top), std::min(a.right, b.right),
                           std::min(a.bottom, b.bottom));
  const double all = area(a.left, a.top, a.right, a.bottom) + area(b.left, b.top, b.right, b.bottom) - both;
  return all > 0 ? both / all : 0;
}

}  // namespace fyn::productionrules
