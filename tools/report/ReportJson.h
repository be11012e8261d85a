#pragma once

#include <cstdint>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

#include "tools/report/MeasureRecordings.h"

namespace fyn::productionrules {

/** The figures of all recordings together and of each; `timing`: the time that decisions take too. */
nlohmann::ordered_json reportAsJson(const std::vector<MeasuredRecording>& recordings, bool timing);

/** What has made a report, and when: milliseconds since 1970. */
struct ReportOrigin {
  std::string version;
  std::int64_t madeAt = 0;
};

/** The same with the metrics' names and definitions for people, each recording's settings and course, and the
 * distributions: what the page shows. */
nlohmann::ordered_json reportPageData(const std::vector<MeasuredRecording>& recordings, bool timing,
                                      const ReportOrigin& origin);

}  // namespace fyn::productionrules
