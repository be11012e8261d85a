#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "tools/recording/RecordingEvent.h"

namespace fyn::productionrules {

/** Milliseconds; a year: what a service does now and then would take a replay of centuries forever. */
constexpr std::int64_t kLatestTime = 31'536'000'000;

/** Reads one line of a recording into `event`. Returns the fault of a malformed line, else nothing. */
std::optional<std::string> parseRecordingLine(const std::string& line, RecordingEvent& event);

}  // namespace fyn::productionrules
