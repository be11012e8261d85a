#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "config/ConfigKeys.h"

namespace fyn::productionrules {

/** The name that is fewest edits from `text`, the first of several; empty when none is near
 * enough to be meant. */
std::string_view nearestName(std::string_view text, const std::vector<std::string_view>& names);

/** The same of the known keys, as a row; null when none is near enough. */
const ConfigKey* nearestKey(std::string_view text);

/** "; did you mean KEY?" or nothing. */
std::string suggestionFor(std::string_view text);

/** "; did you mean NAME?" or nothing. */
std::string suggestionFor(std::string_view text, const std::vector<std::string_view>& names);

}  // namespace fyn::productionrules
