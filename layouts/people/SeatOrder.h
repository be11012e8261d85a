#pragma once

#include <cstdint>
#include <vector>

#include "layouts/people/Seats.h"
#include "model/Layout.h"
#include "model/MLData.h"

namespace fyn::productionrules {

/**
 * Seats of several cameras in the order in which the camera `camId` sees the people from left to right, so
 * that tiles stand as people sit. Whom it does not see, comes where it would: as far as some people are seen
 * by both cameras; else after the others. Seats of this camera alone stay as they are.
 *
 * Persons whom no camera shows both, who would be at one place of the picture, are one, whose numbers broke:
 * they get one seat, of who has a tile in `current` or `pending` (either may be null), or else the lower
 * number.
 */
std::vector<Seat> asSeatedFor(std::uint32_t camId, const MLData& data, std::vector<Seat> seats,
                              const Layout* current, const Layout* pending);

}  // namespace fyn::productionrules
