#pragma once

#include <nlohmann/json_fwd.hpp>
#include <vector>

#include "tools/report/MeasureRecordings.h"

namespace fyn::productionrules {

/** The figures of all recordings together and of each; `timing`: the time that decisions take too. */
nlohmann::ordered_json reportAsJson(const std::vector<MeasuredRecording>& recordings, bool timing);

/** The same with the metrics' names for people, the course of each recording and the distributions: what the
 * page shows. */
nlohmann::ordered_json reportPageData(const std::vector<MeasuredRecording>& recordings, bool timing);

}  // namespace fyn::productionrules
