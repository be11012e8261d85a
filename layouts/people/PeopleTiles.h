#pragma once

#include <cstddef>
#include <vector>

#include "model/Layout.h"

namespace fyn::productionrules {

/** More units than this have no tiles of their own. */
constexpr std::size_t kMaxTiles = 8;

/** Whether the layout shows its people in tiles, and not all of them in one picture. */
bool hasTiles(const Layout& layout);

/**
 * Gives every HEAD and PROXIMITY frame of a layout its tile of the output picture and the shape of the view
 * in it, in the order of the frames. The tiles cover the output without overlap. A layout without frames or
 * with more than kMaxTiles stays as it is.
 */
void placeInTiles(Layout& layout);

/** Whether the frames of a layout lie as placeInTiles would place them. */
bool areInTiles(const Layout& layout);

/** So high a tile's view is at least that one camera pixel becomes no more than 2.5 output pixels high. */
double leastViewHeight(const Frame& tile);

}  // namespace fyn::productionrules
