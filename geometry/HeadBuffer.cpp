#include "geometry/HeadBuffer.h"

#include <algorithm>

#include "config/PrConfig.h"
#include "geometry/RectMath.h"
#include "platform/VisionSettings.h"

namespace fyn::productionrules {

Rect getHeadBufferRect(const Rect& head, const Dimension& image) {
  const auto share = static_cast<float>(PrConfig::get().headBufSizeEachSide / 100.0);
  const std::int32_t dx = truncate(share * toFloat(widthOf(head)));
  const std::int32_t dy = truncate(share * toFloat(heightOf(head)));
  return Rect{std::max(wrapSub(head.left, dx), 0), std::max(wrapSub(head.top, dy), 0),
              std::min(wrapAdd(head.right, dx), image.width),
              std::min(wrapAdd(head.bottom, dy), image.height)};
}

void getBoundaries(const std::vector<Rect>& heads, int& minLeft, int& maxRight, int& minTop, int& maxBottom) {
  if (heads.empty()) {
    PRB_LOGW("TVPR_COMMON", "%s heads are empty, returning false", __func__);
    return;
  }
  Rect box = heads.front();
  for (const Rect& head : heads) {
    box = enclosing(box, head);
  }
  minLeft = box.left;
  maxRight = box.right;
  minTop = box.top;
  maxBottom = box.bottom;
}

}  // namespace fyn::productionrules
