#pragma once

#include <optional>
#include <string>

#include "tools/recording/RecordingEvent.h"

namespace fyn::productionrules {

/** Reads one line of a recording into `event`. Returns the fault of a malformed line, else nothing. */
std::optional<std::string> parseRecordingLine(const std::string& line, RecordingEvent& event);

}  // namespace fyn::productionrules
