#pragma once

#include <vector>

#include "layouts/cycle/BaseLayout.h"
#include "tools/recording/RecordingEvent.h"
#include "tools/report/RoomState.h"

namespace fyn::productionrules {

/** Who is there by the truth, ascending by id. Who has no head box in any camera is left out. */
std::vector<PersonState> peopleOf(const Truth& truth);

/** Who is there by the vision result that `engine` has just handled, in the same order. Nobody for a text
 * that is no vision result. */
std::vector<PersonState> peopleSeen(const BusMessage& result, BaseLayout& engine);

}  // namespace fyn::productionrules
