#pragma once

#include <iosfwd>
#include <vector>

#include "tools/report/MeasureRecordings.h"

namespace fyn::productionrules {

/** Writes a page that needs nothing else: key figures, a time line per recording, distributions, the whole
 * table. `timing`: the time that decisions take too. */
void writeReportPage(std::ostream& out, const std::vector<MeasuredRecording>& recordings, bool timing);

}  // namespace fyn::productionrules
