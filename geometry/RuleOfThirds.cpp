#include "geometry/RuleOfThirds.h"

#include <algorithm>

#include "geometry/FrameShapes.h"
#include "geometry/RectMath.h"
#include "platform/VisionSettings.h"

namespace fyn::productionrules {

namespace {

/** With less per cent of the height left for the heads the share counts as none. */
constexpr std::int32_t kMinVisiblePercent = 2;

VerticalShares verticalShares(std::int32_t bottomPct, std::int32_t topPct) {
  const std::int32_t visible = wrapSub(wrapSub(100, bottomPct), topPct);
  return {bottomPct, topPct, visible < kMinVisiblePercent ? 0.0F : toFloat(visible) / 100.0F};
}

VerticalShares sharesOf(FrameLayout layout) {
  const FrameShape* const shape = findFrameShape(layout);
  const PrConfig& config = PrConfig::get();
  return shape != nullptr ? verticalShares(config.*shape->bottomLine, config.*shape->topLine)
                          : verticalShares(0, 0);
}

void splitHeight(std::int32_t height, const VerticalShares& shares, float& bottomAmount, float& topAmount) {
  // No guard for a share of 0; kept: frames must land on the same pixels.
  const float fullHeight = toFloat(height) / shares.visible;
  bottomAmount = fullHeight * toFloat(shares.bottomPct) / 100.0F;
  topAmount = fullHeight * toFloat(shares.topPct) / 100.0F;
}

bool isBeyondZoomLimit(const Rect& rect, int imageHeight, float bottomAmount, float topAmount,
                       int zoomLimit) {
  // The top amount is subtracted, in this test only; kept: frames must land on the same pixels.
  const float frameHeight = bottomAmount + toFloat(rect.bottom) - toFloat(rect.top) - topAmount;
  return toFloat(imageHeight) / frameHeight > toFloat(zoomLimit);
}

/** Grows the interval around its centre to `length` in pixels; an odd unit goes to the far end. */
void growTo(float length, std::int32_t& from, std::int32_t& to) {
  const std::int32_t growth = truncate(length - toFloat(wrapSub(to, from)));
  from = wrapSub(from, halve(growth));
  // The low bit is 1 for a negative odd growth as well; kept: frames must land on the same pixels.
  to = wrapAdd(to, halve(growth) + (growth & 1));
}

struct Interval {
  std::int32_t from;
  std::int32_t to;
};

Interval placeVertically(const Rect& box, float bottomAmount, float topAmount, std::int32_t imageHeight) {
  std::int32_t bottom = truncate(bottomAmount + toFloat(box.bottom));
  std::int32_t top = truncate(toFloat(box.top) - topAmount);
  if (imageHeight < bottom) {
    top = std::max(wrapSub(wrapAdd(top, imageHeight), bottom), 0);
    bottom = imageHeight;
  } else if (top < 0) {
    // Loses at the bottom what is above the image, does not slide; kept: frames must land on the same pixels.
    bottom = wrapAdd(bottom, top);
    top = 0;
  }
  return {top, std::min(bottom, imageHeight)};
}

Interval placeHorizontally(const Rect& box, std::int32_t width, std::int32_t imageWidth) {
  const std::int32_t half = halve(width);
  const std::int32_t centre = halve(wrapAdd(box.left, box.right));
  const std::int32_t left = wrapSub(centre, half);
  const std::int32_t right = wrapAdd(centre, half);
  if (imageWidth < right) {
    return {std::max(wrapSub(wrapAdd(left, imageWidth), right), 0), imageWidth};
  }
  if (left < 0) {
    return {0, std::min(imageWidth, wrapMul(2, half))};
  }
  return {left, right};
}

}  // namespace

Rect& applyZoomFactor(Rect& rect, int imageWidth, int imageHeight, int bottomPct, int topPct,
                      float& bottomAmount, float& topAmount, int zoomLimit) {
  const VerticalShares shares = verticalShares(bottomPct, topPct);
  splitHeight(heightOf(rect), shares, bottomAmount, topAmount);
  if (zoomLimit < 1 || !isBeyondZoomLimit(rect, imageHeight, bottomAmount, topAmount, zoomLimit)) {
    return rect;
  }
  const float limit = toFloat(zoomLimit);
  growTo(shares.visible * (toFloat(imageHeight) / limit), rect.top, rect.bottom);
  growTo(shares.visible * (toFloat(imageWidth) / limit), rect.left, rect.right);
  splitHeight(heightOf(rect), shares, bottomAmount, topAmount);
  return rect;
}

RuleOfThirds::RuleOfThirds(int targetWidth, int targetHeight, FrameLayout layout, const Dimension& image)
    : mTarget{targetWidth, targetHeight},
      mImage(image),
      mAspect(toFloat(targetWidth) / toFloat(targetHeight)),
      mShares(sharesOf(layout)),
      mHasShares(layout != kFrameLayoutNone) {}

Rect RuleOfThirds::frameAround(Rect box, int zoomLimit) const {
  if (!mHasShares) {
    PRB_LOGE("TVPR_COMMON", "getRuleOfThirdFrame Layout type is kFrameLayoutNone ");
    return box;
  }
  float bottomAmount = 0.0F;
  float topAmount = 0.0F;
  if (zoomLimit >= 1) {
    applyZoomFactor(box, mTarget.width, mTarget.height, mShares.bottomPct, mShares.topPct, bottomAmount,
                    topAmount, zoomLimit);
  } else {
    splitHeight(heightOf(box), mShares, bottomAmount, topAmount);
  }
  const Interval vertical = placeVertically(box, bottomAmount, topAmount, mImage.height);
  const std::int32_t width = truncate(mAspect * toFloat(wrapSub(vertical.to, vertical.from)));
  const Interval horizontal = placeHorizontally(box, width, mImage.width);
  return Rect{horizontal.from, vertical.from, horizontal.to, vertical.to};
}

bool RuleOfThirds::operator==(const RuleOfThirds& other) const {
  return mTarget == other.mTarget && mImage == other.mImage && mShares.bottomPct == other.mShares.bottomPct &&
         mShares.topPct == other.mShares.topPct && mHasShares == other.mHasShares;
}

Rect getRuleOfThirdFrame(Rect box, int targetWidth, int targetHeight, FrameLayout layout,
                         const Dimension& image, int zoomLimit) {
  return RuleOfThirds(targetWidth, targetHeight, layout, image).frameAround(box, zoomLimit);
}

}  // namespace fyn::productionrules
