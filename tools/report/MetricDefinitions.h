#pragma once

#include <nlohmann/json_fwd.hpp>

namespace fyn::productionrules {

/** {"name": "definition", ...} of the metrics, as docs/measuring.md gives them. */
nlohmann::ordered_json metricDefinitions();

}  // namespace fyn::productionrules
