#include "layouts/people/ViewGrowth.h"

#include <algorithm>
#include <cstdint>

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

}  // namespace

Rect grownTo(const Rect& view, const Dimension& least, const Dimension& image) {
  Rect grown = view;
  growTo(grown.left, grown.right, least.width, image.width);
  growTo(grown.top, grown.bottom, least.height, image.height);
  return grown;
}

}  // namespace fyn::productionrules
