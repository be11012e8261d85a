#pragma once

#include <vector>

#include "model/Geometry.h"

namespace fyn::productionrules {

/** The view grown around its middle until it has at least that size, as far as the image goes; pixels. */
Rect grownTo(const Rect& view, const Dimension& least, const Dimension& image);

/** Whether the view has the shape of the output, so that faces keep theirs. */
bool hasOutputShape(const Rect& view);

/** The part of the view that has the shape of the output, around the heads, as far as these lie in the view.
 * The view itself when it has that shape already, and when no such part holds the heads. */
Rect inOutputShape(const Rect& view, const std::vector<Rect>& heads);

}  // namespace fyn::productionrules
