#pragma once

#include <cstdint>
#include <string>

namespace fyn::productionrules {

/** The milliseconds of a moment as all commands print it, "02:05.133" (minutes and seconds), with hours as
 * the viewer does, or of a number of seconds, "125.133". Raises UsageError for any other text. */
std::int64_t momentOf(const std::string& text);

}  // namespace fyn::productionrules
