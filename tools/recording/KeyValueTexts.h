#pragma once

#include <string>
#include <vector>

#include "tools/recording/RecordingEvent.h"

namespace fyn::productionrules {

/** Pairs of KEY=VALUE texts, as a command line gives them. Raises UsageError for any other text. */
KeyValues keyValues(const std::vector<std::string>& texts);

}  // namespace fyn::productionrules
