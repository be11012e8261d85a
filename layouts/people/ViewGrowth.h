#pragma once

#include "model/Geometry.h"

namespace fyn::productionrules {

/** The view grown around its middle until it has at least that size, as far as the image goes; pixels. */
Rect grownTo(const Rect& view, const Dimension& least, const Dimension& image);

}  // namespace fyn::productionrules
