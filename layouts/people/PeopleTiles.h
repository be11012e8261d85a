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

/** So high a tile's view is at least that one camera pixel becomes no more than 2.5 output pixels high. */
double leastViewHeight(const Frame& tile);

/** The box around which a tile's view is made, grown around its middle until the view is `least` high, as far
 * as the image allows. All in camera pixels. */
Rect growToHeight(const Rect& base, const Frame& tile, const Dimension& image, double least);

/**
 * The same until the view is `height` high, or a part of the way, as far as it then shows nothing of others
 * of whom it shows nothing as it is. All in camera pixels.
 */
Rect growBesideOthers(const Rect& base, const std::vector<Rect>& others, const Frame& tile,
                      const Dimension& image, double height);

/**
 * The same box moved up or down until the middle of `own` is at 0.4 of the view's height, as in all tiles of
 * a row, or a part of the way: the view does not become smaller by it, shows `own` whole and nothing more of
 * others.
 */
Rect withEyesInLine(const Rect& base, const Rect& own, const std::vector<Rect>& others, const Frame& tile,
                    const Dimension& image);

/** The same box moved to the side, when the tile's view then shows nothing of others of whose heads it would
 * show a little at one side, and `own` whole. By 0.15 of the view's width at most; camera pixels. */
Rect turnFromOthers(const Rect& base, const Rect& own, const std::vector<Rect>& others, const Frame& tile,
                    const Dimension& image);

/** The same for a picture of its own, which has the room to be grown as well: the box with the smallest
 * change for a view that cuts no other's head and shows `own` whole, as it is where there is none. */
Rect clearOfOthers(const Rect& base, const Rect& own, const std::vector<Rect>& others, const Frame& tile,
                   const Dimension& image);

/** Whether the view shows more than a twentieth of a head's width and height, and leaves out as much. */
bool cutsAny(const std::vector<Rect>& heads, const Rect& view);

}  // namespace fyn::productionrules
