#include "geometry/FramePredicates.h"

#include <algorithm>
#include <cstdlib>

#include "config/PrConfig.h"
#include "geometry/Overlap.h"
#include "geometry/RectMath.h"

namespace fyn::productionrules {

namespace {

/** In pixels of half the size. */
constexpr std::int32_t kSameSizeTolerance = 10;

}  // namespace

bool isGFMoveClose(const Rect& current, const Rect& latest) {
  const auto factor = static_cast<float>((100.0 - PrConfig::get().groupBoundaryBufSizeMoveCloser) / 100.0);
  return factor * toFloat(areaOf(current)) >= toFloat(areaOf(latest));
}

bool isGFMoveAway(const Rect& current, const Rect& latest) {
  return !(current.left <= latest.left && current.top <= latest.top && current.right >= latest.right &&
           current.bottom >= latest.bottom);
}

bool isOnFrameEdge(const Rect& head, const Rect& frame) {
  const bool crossesSide = (head.left < frame.left && head.right > frame.left) ||
                           (head.top < frame.top && head.bottom > frame.top) ||
                           (head.right > frame.right && head.left < frame.right) ||
                           (head.bottom > frame.bottom && head.top < frame.bottom);
  // A frame without area gives not-a-number or infinity, which passes this gate; kept: frames must land on
  // the same pixels.
  return crossesSide && getOverlap(head, frame) != 0.0F;
}

bool isGFHeadOnEdge(const Rect& frame, const std::vector<Rect>& heads) {
  return std::any_of(heads.begin(), heads.end(),
                     [&](const Rect& head) { return isOnFrameEdge(head, frame); });
}

bool isOutsideEdge(const Rect& a, const Rect& b) {
  return a.left > b.right || a.top > b.bottom || a.right < b.left || a.bottom < b.top;
}

bool isGFHeadOutside(const Rect& frame, const std::vector<Rect>& heads) {
  return std::any_of(heads.begin(), heads.end(),
                     [&](const Rect& head) { return isOutsideEdge(head, frame); });
}

bool isCenter(const Rect& a, const Rect& b) {
  // Sizes, not positions; kept: frames must land on the same pixels.
  const std::int32_t dx = halve(widthOf(a)) - halve(widthOf(b));
  const std::int32_t dy = halve(heightOf(a)) - halve(heightOf(b));
  return std::abs(dx) < kSameSizeTolerance && std::abs(dy) < kSameSizeTolerance;
}

bool isNotCenter(const Rect& a, const Rect& b) {
  return a.left == b.left || a.bottom == b.bottom || a.top == b.top || a.right == b.right;
}

bool isSameFrame(const Rect& a, const Rect& b) {
  return a == b;
}

bool isInside(const Rect& a, const Rect& b) {
  return a.right > b.right && a.left < b.left && a.top < b.top && a.bottom > b.bottom;
}

bool isInProximity(const Rect& a, const Rect& b) {
  return a.left < b.right && b.left < a.right && a.bottom > b.top && b.bottom > a.top;
}

bool isInProximity(const Rect& a, const Rect& b, int minWidth) {
  if (widthOf(a) >= minWidth) {
    return isInProximity(a, b);
  }
  const double centre = toFloat(wrapAdd(a.left, a.right)) * 0.5;
  const std::int32_t half = halve(minWidth);
  return centre - half < b.right && centre + half > b.left && a.bottom > b.top && b.bottom > a.top;
}

}  // namespace fyn::productionrules
