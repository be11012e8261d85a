#include "layouts/people/ViewGrowth.h"

#include <algorithm>
#include <cstdint>

#include "geometry/RectMath.h"
#include "model/Arithmetic.h"

namespace fyn::productionrules {

namespace {

void growTo(std::int32_t& low, std::int32_t& high, std::int32_t length, std::int32_t size) {
  const std::int32_t goal = std::min(length, size);
  if (std::int64_t{high} - low >= goal) {
    return;
  }
  const std::int64_t middle = (std::int64_t{low} + high - goal) / 2;
  low = static_cast<std::int32_t>(std::clamp<std::int64_t>(middle, 0, size - goal));
  high = low + goal;
}

// What nobody sees, of a side.
constexpr double kSameShape = 1.02;

constexpr double kShape = static_cast<double>(kOutputSize.width) / kOutputSize.height;

/** Shortens a span to `length` around the heads, which span `from` to `to`; false when they need more. */
bool shortenAround(std::int32_t& low, std::int32_t& high, std::int32_t length, std::int32_t from,
                   std::int32_t to) {
  from = std::clamp(from, low, high);
  to = std::clamp(to, low, high);
  if (std::int64_t{to} - from > length) {
    return false;
  }
  const std::int64_t middle = (std::int64_t{from} + to - length) / 2;
  low = static_cast<std::int32_t>(std::clamp<std::int64_t>(middle, low, std::int64_t{high} - length));
  high = low + length;
  return true;
}

}  // namespace

Rect grownTo(const Rect& view, const Dimension& least, const Dimension& image) {
  Rect grown = view;
  growTo(grown.left, grown.right, least.width, image.width);
  growTo(grown.top, grown.bottom, least.height, image.height);
  return grown;
}

bool hasOutputShape(const Rect& view) {
  const double wide = kShape * heightOf(view);
  return widthOf(view) <= kSameShape * wide && wide <= kSameShape * widthOf(view);
}

Rect inOutputShape(const Rect& view, const std::vector<Rect>& heads) {
  if (hasOutputShape(view) || heads.empty()) {
    return view;
  }
  Rect around = heads.front();
  for (const Rect& head : heads) {
    around = enclosing(around, head);
  }
  Rect part = view;
  const double wide = kShape * heightOf(view);
  const bool holdsHeads =
      wide > widthOf(view)
          ? shortenAround(part.top, part.bottom, truncate(widthOf(view) / kShape), around.top, around.bottom)
          : shortenAround(part.left, part.right, truncate(wide), around.left, around.right);
  return holdsHeads ? part : view;
}

}  // namespace fyn::productionrules
