#pragma once

#include <string>
#include <string_view>

#include "config/ConfigKeys.h"

namespace fyn::productionrules {

/** The known key that is fewest edits (Levenshtein) from `text`; null when none is near enough to be meant.
 */
const ConfigKey* nearestKey(std::string_view text);

/** "; did you mean KEY?" or nothing. */
std::string suggestionFor(std::string_view text);

}  // namespace fyn::productionrules
