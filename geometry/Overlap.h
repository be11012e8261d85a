#pragma once

#include "model/Geometry.h"

namespace fyn::productionrules {

/** Square pixels, never negative. For hosts. */
double calculateArea(const Rect& rect);

/**
 * Width of the common part times height of the union, in square pixels: the vertical span runs from the
 * higher top to the lower bottom, and rectangles that lie apart still give a positive value. 0 when either
 * span is 0. For hosts.
 */
double getOverlappingArea(const Rect& a, const Rect& b);

/**
 * Overlap as a share of the area of the rectangle that begins further left. Not clipped to the other
 * rectangle's extent, so it can exceed 1. A leftmost rectangle without area gives infinity or not-a-number.
 */
float getOverlap(const Rect& a, const Rect& b);

/** Difference of the areas as a share of the larger one, 0 to 1; 0 when either has no area. For hosts. */
float getSizeDelta(const Rect& a, const Rect& b);

/** The area that both share, of the area of both together: 0 to 1, 0 without an area. */
double getIntersectionOverUnion(const Rect& a, const Rect& b);

}  // namespace fyn::productionrules
