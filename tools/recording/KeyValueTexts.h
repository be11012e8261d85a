#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tools/recording/RecordingEvent.h"

namespace fyn::productionrules {

/** Pairs of KEY=VALUE texts, as a command line gives them. Raises UsageError for any other text. */
KeyValues keyValues(const std::vector<std::string>& texts);

/** The text of a configuration file; nothing for "". Raises UsageError when the file cannot be read. */
std::optional<std::string> readConfiguration(const std::string& path);

}  // namespace fyn::productionrules
