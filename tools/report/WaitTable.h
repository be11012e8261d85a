#pragma once

#include <iosfwd>
#include <string>
#include <utility>
#include <vector>

#include "tools/report/Measurement.h"

namespace fyn::productionrules {

/** What each wait did, by its configuration key; first the one that a shorter wait would gain most of: the
 * time that somebody was off screen meanwhile. */
std::vector<std::pair<std::string, WaitFigures>> waitsByGain(const Measurement& measurement);

/** The same as a table; nothing without waits. */
void writeWaitTable(std::ostream& out, const Measurement& measurement);

}  // namespace fyn::productionrules
