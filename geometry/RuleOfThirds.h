#pragma once

#include <cstdint>

#include "model/Enums.h"
#include "model/Geometry.h"

namespace fyn::productionrules {

/**
 * Splits the height of a frame around `rect` into its shares and keeps the zoom within a limit.
 *
 * `bottomPct` and `topPct` are the per cent of the frame's height below and above the rectangle;
 * `bottomAmount` and `topAmount` receive the same in pixels. When the image is more than `zoomLimit` times as
 * high as the frame, the rectangle grows around its centre until it is not (it may leave the image). A limit
 * below 1 is none. Less than 2 per cent left for the rectangle itself make the amounts infinite or not a
 * number. Returns `rect`.
 */
Rect& applyZoomFactor(Rect& rect, int imageWidth, int imageHeight, int bottomPct, int topPct,
                      float& bottomAmount, float& topAmount, int zoomLimit);

/** How the height of a frame is shared. */
struct VerticalShares {
  std::int32_t bottomPct;
  std::int32_t topPct;
  /** What is left for the box, 0 to 1. */
  float visible;
};

/** What every frame in one place of the output has in common: see getRuleOfThirdFrame. */
class RuleOfThirds {
 public:
  RuleOfThirds(int targetWidth, int targetHeight, FrameLayout layout, const Dimension& image);

  Rect frameAround(Rect box, int zoomLimit) const;

  bool operator==(const RuleOfThirds& other) const;

 private:
  Dimension mTarget;
  Dimension mImage;
  float mAspect;
  VerticalShares mShares;
  bool mHasShares;
};

/**
 * The frame of the aspect `targetWidth` : `targetHeight` around a box of heads that keeps the shape's shares
 * of space above and below the box (per cent of the frame's height), within the image. The zoom limit counts
 * from the target's size; below 1 it is none. kFrameLayoutNone has no shares: an error is logged and the box
 * returned.
 */
Rect getRuleOfThirdFrame(Rect box, int targetWidth, int targetHeight, FrameLayout layout,
                         const Dimension& image, int zoomLimit);

}  // namespace fyn::productionrules
