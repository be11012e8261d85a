#pragma once

#include <vector>

#include "layouts/people/Seats.h"

/** Who shares a tile with whom. Nothing here depends on where persons lie in memory. */
namespace fyn::productionrules {

/** The persons of one tile, in the order of the seats; one person, or neighbours in one camera. */
using PeopleUnit = std::vector<Seat>;

/**
 * Forms the units of the seats, in the order of their first persons. Persons of one camera join when their
 * heads with their buffers overlap; those who share a frame of `current` stay together for as long as the
 * wider trigger rectangles connect them, so that a pair at the limit does not flicker, and those who share
 * a frame of `pending` while they connect all of its people, so that somebody who comes between two others
 * and goes again joins nobody. Either layout may be null. The units replace those of an earlier result.
 */
void formUnits(std::vector<Seat> seats, const Layout* current, const Layout* pending,
               std::vector<PeopleUnit>& units);

/**
 * Joins two units of which one's tile, that shows `views[i]` of its camera, shows part of a head of the
 * other; false when there are none. More than 30 per cent of the head's width count, or, for two who share a
 * frame of `current`, or of `pending` when all its people are there (either may be null), any part of it in a
 * view that is wider by 8 per cent on each side.
 */
bool joinByView(std::vector<PeopleUnit>& units, const std::vector<Rect>& views, const Layout* current,
                const Layout* pending);

/**
 * Keeps each unit at the place where it is on screen, where all of them are there and several cameras take
 * part: who is taken from another camera keeps the tile.
 */
void orderAsShown(std::vector<PeopleUnit>& units, const Layout& shown);

/** A unit of one for every seat. */
void unitsOfOne(std::vector<Seat> seats, std::vector<PeopleUnit>& units);

}  // namespace fyn::productionrules
