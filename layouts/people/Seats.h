#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "layouts/people/HeadsInView.h"
#include "model/Layout.h"
#include "model/MLData.h"

/** Which camera shows whom in a tile. */
namespace fyn::productionrules {

/** A person as one camera shows the person. */
struct Seat {
  std::shared_ptr<FynHead> person;
  /** FynHead::kNoCamera for the first camera of each person. */
  std::uint32_t camId = FynHead::kNoCamera;
};

/** A seat for everybody in view, left to right as MLData::sortFynHeads puts them. */
std::vector<Seat> findSeats(const MLData& data, const HeadsInView& heads);

/** The camera that shows the person best among those of the camera list; nothing when none shows the person.
 */
std::optional<std::uint32_t> findBestCamera(const FynHead& person);

/** The camera of the person's tile; nothing where the layout, which may be null, has none. */
std::optional<std::uint32_t> cameraOfTile(const Layout* layout, const FynHead& person);

/**
 * A seat for every person whom some camera of the list shows: those of `ownCamId` first, then by camera, in
 * each from left to right. Who has a tile in `current`, or else in `pending` (either may be null), stays with
 * the camera of that tile while it shows the person; everybody else is taken from the best camera.
 */
std::vector<Seat> chooseSeats(const MLData& data, const Layout* current, const Layout* pending,
                              std::int32_t ownCamId);

/**
 * The camera for a picture of all: `frontCamId`, or `ownCamId` when it sees nobody, or else the camera of
 * most seats.
 */
std::uint32_t findGroupCamera(const MLData& data, const std::vector<Seat>& seats, std::int32_t frontCamId,
                              std::int32_t ownCamId);

/**
 * The camera that shows most of the people; `camId` for as long as no other shows two more, or everybody
 * where it does not.
 */
std::uint32_t findFullestCamera(const PeopleMap& people, std::uint32_t camId);

}  // namespace fyn::productionrules
