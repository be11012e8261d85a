#pragma once

#include <algorithm>
#include <cstdint>

#include "model/Arithmetic.h"
#include "model/Geometry.h"

/** The few measures that every geometric question is made of; 32-bit integers that wrap, so any rectangle is
 * legal. */
namespace fyn::productionrules {

/** Pixels; negative for an inverted rectangle. */
constexpr std::int32_t widthOf(const Rect& rect) {
  return wrapSub(rect.right, rect.left);
}

/** Pixels; negative for an inverted rectangle. */
constexpr std::int32_t heightOf(const Rect& rect) {
  return wrapSub(rect.bottom, rect.top);
}

/** Square pixels, with the sign of width times height. */
constexpr std::int32_t areaOf(const Rect& rect) {
  return wrapMul(widthOf(rect), heightOf(rect));
}

/** Names the place where whole pixels enter 32-bit float arithmetic. */
constexpr float toFloat(std::int32_t value) {
  return static_cast<float>(value);
}

/** The smallest left and top and the largest right and bottom of both. */
constexpr Rect enclosing(const Rect& a, const Rect& b) {
  return Rect{std::min(a.left, b.left), std::min(a.top, b.top), std::max(a.right, b.right),
              std::max(a.bottom, b.bottom)};
}

/** Whether some pixels are in both. */
constexpr bool doOverlap(const Rect& a, const Rect& b) {
  return a.left < b.right && a.right > b.left && a.top < b.bottom && a.bottom > b.top;
}

/** The box with that many pixels more at each side: `across` left and right, `up` above and below. */
constexpr Rect grownBy(const Rect& box, std::int32_t across, std::int32_t up) {
  return {wrapSub(box.left, across), wrapSub(box.top, up), wrapAdd(box.right, across),
          wrapAdd(box.bottom, up)};
}

}  // namespace fyn::productionrules
