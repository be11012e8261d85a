#include "geometry/GroupFrame.h"

#include <cmath>

#include "config/PrConfig.h"
#include "geometry/HeadBuffer.h"
#include "geometry/RectMath.h"
#include "geometry/RuleOfThirds.h"
#include "platform/VisionSettings.h"

namespace fyn::productionrules {

namespace {

constexpr const char* kTag = "PRB_GF";

// The limit is slightly below 16:9 and not the aspect itself; kept: frames must land on the same pixels.
constexpr double kWideRatio = 1.77;
constexpr float kHeightPerWidth = 0.5625F;
constexpr double kWidthPerHeight = 1.7777777777777777;

Rect wholeImage(const Dimension& image) {
  return Rect{0, 0, image.width, image.height};
}

Rect withHeight(const Rect& box, std::int32_t height) {
  const std::int32_t centre = halve(wrapAdd(box.bottom, box.top));
  return Rect{box.left, wrapSub(centre, halve(height)), box.right, wrapAdd(centre, halve(height))};
}

Rect withWidth(const Rect& box, std::int32_t width) {
  const std::int32_t centre = halve(wrapAdd(box.right, box.left));
  return Rect{wrapSub(centre, halve(width)), box.top, wrapAdd(centre, halve(width)), box.bottom};
}

struct GroupBuffers {
  float top;
  float bottom;
  float side;
};

GroupBuffers groupBuffers(const PrConfig& config) {
  return {static_cast<float>(config.groupBoundaryBufSizeTop / 100.0),
          static_cast<float>(config.groupBoundaryBufSizeBottom / 100.0),
          static_cast<float>(config.groupBoundaryBufSizeSide / 100.0)};
}

bool fits(const Rect& box, const GroupBuffers& buffers, const Dimension& image) {
  const float sides = 2.0F * buffers.side;
  const float ends = buffers.top + buffers.bottom;
  return image.width > truncate((sides + 1.0) * widthOf(box)) &&
         image.height > truncate((ends + 1.0) * heightOf(box));
}

void addBuffers(Rect& box, const GroupBuffers& buffers) {
  const std::int32_t width = widthOf(box);
  const std::int32_t height = heightOf(box);
  box.left = wrapSub(box.left, truncate(buffers.side * toFloat(width)));
  box.top = wrapSub(box.top, truncate(buffers.top * toFloat(height)));
  // Right and bottom take their share of the size that has already grown; kept: frames must land on the same
  // pixels.
  box.right = wrapAdd(box.right, truncate(buffers.side * toFloat(widthOf(box))));
  box.bottom = wrapAdd(box.bottom, truncate(buffers.bottom * toFloat(heightOf(box))));
}

void limitZoom(Rect& box, const GroupBuffers& buffers, const Dimension& image, int zoomLimit) {
  float bottomAmount = 0.0F;
  float topAmount = 0.0F;
  applyZoomFactor(box, image.width, image.height, truncate(buffers.bottom * 100.0F),
                  truncate(buffers.top * 100.0F), bottomAmount, topAmount, zoomLimit);
}

// Shifts the span so that it begins in the image, then so that it ends there.
void keepInside(std::int32_t& low, std::int32_t& high, std::int32_t size) {
  if (low < 0) {
    high = wrapSub(high, low);
    low = 0;
  }
  if (high > size) {
    low = wrapSub(wrapAdd(low, size), high);
    high = size;
  }
}

void keepInside(Rect& box, const Dimension& image) {
  keepInside(box.left, box.right, image.width);
  keepInside(box.top, box.bottom, image.height);
  if (widthOf(box) >= image.width || heightOf(box) >= image.height) {
    box = wholeImage(image);
  }
}

}  // namespace

Rect GroupFrame::getGroupDetectionBoundary(const std::vector<Rect>& heads, const char* /*caller*/,
                                           const Dimension& image) {
  if (heads.empty()) {
    PRB_LOGE(kTag, "Group Boundary failed, room has no heads");
    return Rect{};
  }
  Rect box = getHeadBufferRect(heads.front(), image);
  for (const Rect& head : heads) {
    box = enclosing(box, getHeadBufferRect(head, image));
  }
  const std::int32_t width = widthOf(box);
  const std::int32_t height = heightOf(box);
  const double ratio = toFloat(width) / toFloat(height);
  // Re-centred without regard to the image, and not-a-number stays as it is; kept: frames must land on the
  // same pixels.
  if (ratio > kWideRatio) {
    return withHeight(box, truncate(std::ceil(toFloat(width) * kHeightPerWidth)));
  }
  if (ratio < kWideRatio) {
    return withWidth(box, truncate(std::ceil(height * kWidthPerHeight)));
  }
  return box;
}

void GroupFrame::updateGroupFrameLayout(const std::vector<Rect>& heads, Frame& frame, const char* caller,
                                        const Dimension& image, int zoomLimit) {
  if (heads.empty()) {
    PRB_LOGE(kTag, "Group Frame failed, Applying ROOM View as a fallback");
    frame.source = kRoomView;
    return;
  }
  Rect box = getGroupDetectionBoundary(heads, caller, image);
  frame.detectionBoundary = box;
  const PrConfig& config = PrConfig::get();
  if (config.groupBoundaryEnable) {
    const GroupBuffers buffers = groupBuffers(config);
    if (zoomLimit >= 1) {
      limitZoom(box, buffers, image, zoomLimit);
    }
    if (fits(box, buffers, image)) {
      addBuffers(box, buffers);
    } else {
      box = wholeImage(image);
    }
  }
  keepInside(box, image);
  frame.source = box;
}

}  // namespace fyn::productionrules
