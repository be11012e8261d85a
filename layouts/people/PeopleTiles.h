#pragma once

#include <cstddef>

#include "model/Layout.h"

namespace fyn::productionrules {

/** More units than this have no tiles of their own. */
constexpr std::size_t kMaxTiles = 8;

/**
 * Gives every HEAD and PROXIMITY frame of a layout its tile of the output picture and the shape of the view
 * in it, in the order of the frames. The tiles cover the output without overlap. A layout without frames or
 * with more than kMaxTiles stays as it is.
 */
void placeInTiles(Layout& layout);

}  // namespace fyn::productionrules
