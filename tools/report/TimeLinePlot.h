#pragma once

#include <string>

#include "tools/report/Measurement.h"

namespace fyn::productionrules {

/** HTML with the course of one recording: what each stream shows, how many people are in view, how fast
 * events are answered. */
std::string timeLinePlots(const Measurement& measurement);

}  // namespace fyn::productionrules
