#pragma once

#include <vector>

#include "model/Geometry.h"

namespace fyn::productionrules {

/** The head grown on each side by headBufSizeEachSide per cent of its width and height, cut at the image. */
Rect getHeadBufferRect(const Rect& head, const Dimension& image);

/** The extremes of all heads, in pixels. Without heads a warning is logged and the outputs stay as they are.
 */
void getBoundaries(const std::vector<Rect>& heads, int& minLeft, int& maxRight, int& minTop, int& maxBottom);

}  // namespace fyn::productionrules
