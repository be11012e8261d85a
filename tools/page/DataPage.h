#pragma once

#include <iosfwd>
#include <nlohmann/json_fwd.hpp>

namespace fyn::productionrules {

/** Writes the page that shows `data` (viewer/src/report/data.ts) as tables and plots, and needs nothing else.
 */
void writeDataPage(std::ostream& out, const nlohmann::ordered_json& data);

}  // namespace fyn::productionrules
