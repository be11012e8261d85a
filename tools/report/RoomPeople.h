#pragma once

#include <vector>

#include "model/VisionResultReader.h"
#include "tools/recording/RecordingEvent.h"
#include "tools/report/RoomState.h"

namespace fyn::productionrules {

/** Who is there by the truth, ascending by id. Who has no head box in any camera is left out. */
std::vector<PersonState> peopleOf(const Truth& truth);

/** Who is there by a vision result, in the same order. Nobody for a text that is none. */
std::vector<PersonState> peopleSeen(const BusMessage& result, VisionResultReader& reader);

}  // namespace fyn::productionrules
