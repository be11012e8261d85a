#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "layouts/people/PeopleUnits.h"
#include "model/Layout.h"

/** Which of the room's cameras shows whom. */
namespace fyn::productionrules {

/** The camera that shows the person best among those of the camera list; nothing when none shows the person.
 */
std::optional<std::uint32_t> findBestCamera(const FynHead& person);

/**
 * A seat for every person whom some camera of the list shows, sorted. Who has a tile in `current`, or else in
 * `pending` (either may be null), stays with the camera of that tile while it shows the person; everybody
 * else is taken from the best camera.
 */
std::vector<Seat> chooseSeats(const MLData& data, const Layout* current, const Layout* pending,
                              std::int32_t ownCamId);

/**
 * The camera for a picture of all: `frontCamId`, or `ownCamId` when it sees nobody, or else the camera of
 * most seats.
 */
std::uint32_t findGroupCamera(const MLData& data, const std::vector<Seat>& seats, std::int32_t frontCamId,
                              std::int32_t ownCamId);

}  // namespace fyn::productionrules
