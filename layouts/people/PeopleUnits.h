#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "model/FynHead.h"
#include "model/Layout.h"
#include "model/MLData.h"

/** Who is shown by which camera, and who shares a tile with whom. Nothing here depends on where persons lie
 * in memory. */
namespace fyn::productionrules {

/** A person as one camera shows the person. */
struct Seat {
  std::shared_ptr<FynHead> person;
  /** FynHead::kNoCamera for the first camera of each person. */
  std::uint32_t camId = FynHead::kNoCamera;
};

/** The persons of one tile, left to right; one person, or neighbours in one camera. */
using PeopleUnit = std::vector<Seat>;

/** Whether the head has a box with an area of which some part lies inside an image of that size in pixels. */
bool isShowable(const Head* head, const Dimension& image);

/**
 * The persons of a vision result whose head camera `camId` can show, left to right as MLData::sortFynHeads
 * puts them. Of two persons with one id the first counts.
 */
std::vector<Seat> findSeats(const MLData& data, std::uint32_t camId);

/** Puts the seats in order: those of `ownCamId` first, then by camera, in each from left to right. */
void sortSeats(std::vector<Seat>& seats, std::int32_t ownCamId);

/**
 * Forms the units of sorted seats, in the order of their first persons. Persons of one camera join when their
 * heads with their buffers overlap; those who share a frame of `current` stay together for as long as the
 * wider trigger rectangles connect them, so that a pair at the limit does not flicker, and those who share
 * a frame of `pending` while they connect all of its people, so that somebody who comes between two others
 * and goes again joins nobody. Either layout may be null.
 */
std::vector<PeopleUnit> formUnits(const std::vector<Seat>& seats, const Layout* current,
                                  const Layout* pending);

}  // namespace fyn::productionrules
