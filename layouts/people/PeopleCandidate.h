#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "layouts/cycle/BaseLayout.h"
#include "layouts/people/PeopleUnits.h"

namespace fyn::productionrules {

/** What a people engine has chosen before tiles are given out. */
struct PeopleChoice {
  /** Everybody who can be shown, sorted. */
  std::vector<Seat> seats;
  /** With more people the layout is a group. */
  std::int32_t maxPeople = 0;
  /** The camera of a ROOM layout. */
  std::uint32_t roomCamId = 0;
  /** The camera of a GROUP layout. */
  std::uint32_t groupCamId = 0;
};

/**
 * The candidate layout of a people engine: a tile for every unit; a ROOM layout for nobody; a GROUP layout
 * for too many people or units, for a single unit of more than three, and when a tile would cut somebody whom
 * it shows. The people map of `engine` must be that of `data`: the views are tried with it.
 */
std::shared_ptr<Layout> makePeopleCandidate(BaseLayout& engine, const MLData& data,
                                            const PeopleChoice& choice);

}  // namespace fyn::productionrules
