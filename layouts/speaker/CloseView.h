#pragma once

#include <cstdint>
#include <vector>

#include "model/Frame.h"

namespace fyn::productionrules {

/**
 * Places a frame around its members: as close as the group frame would be, but no head is taller than 30 per
 * cent of the view, no pixel of the camera is enlarged by more than 2.5, and the middle of the heads is at 40
 * per cent of the height. Where the head of a neighbour would be cut or glued to a side, the view is shifted
 * or grown a little. Heads and views are camera pixels; of a head counts what lies in the image.
 */
void placeClosely(Frame& frame, const std::vector<Rect>& members, const std::vector<Rect>& neighbours,
                  unsigned zoomLimit);

/** Whether a view that `placeClosely` makes of these heads, of which there is one at least, may be lower than
 * `height`; said without a search among the neighbours. */
bool canBeLowerThan(double height, std::uint32_t camId, const std::vector<Rect>& members, unsigned zoomLimit);

/** Whether the view shows more than a tenth of the head, but not all but a tenth. */
bool cuts(const Rect& view, const Rect& head);

}  // namespace fyn::productionrules
