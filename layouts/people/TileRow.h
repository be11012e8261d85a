#pragma once

#include "geometry/PeopleMap.h"
#include "model/Layout.h"

/** Tiles beside one another belong together: no head in them should look much larger than another. */
namespace fyn::productionrules {

/**
 * The least height of a tile's view, in camera pixels, with which none of its heads is shown more than 1.2
 * times as tall as the smallest that the tiles beside it show. People sway, so that this keeps them
 * within 1.25. 0 when nothing is asked of the view: nobody has a head in the tile or beside it, or `tile` is
 * none of the layout's own frames (a candidate's tiles have no views yet).
 */
double viewHeightLikeRow(const Frame& tile, const Layout& layout, const PeopleMap& people);

}  // namespace fyn::productionrules
