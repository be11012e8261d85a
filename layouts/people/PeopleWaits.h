#pragma once

#include "layouts/cycle/WaitRule.h"

namespace fyn::productionrules {

/** The wait of people framing for a change from a layout that is not a group; null where nothing waits. */
const WaitRule* findPeopleWait(FramingType from, FramingType to, bool peopleCountChanged);

}  // namespace fyn::productionrules
