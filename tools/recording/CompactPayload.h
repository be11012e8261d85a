#pragma once

#include <string>

#include "tools/recording/CompactText.h"

namespace fyn::productionrules {

/** Writes a bus payload as it stands in a recording: compact JSON when it is an object or array, else a
 * string. */
void writePayload(CompactText& text, const std::string& payload);

}  // namespace fyn::productionrules
