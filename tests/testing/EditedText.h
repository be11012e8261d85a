#pragma once

#include <random>
#include <string>

namespace fyn::productionrules::testing {

/** A JSON text of vision results or recordings after a few edits: most are broken or unusual, and some are
 * not. */
std::string editedText(std::string text, std::mt19937& random);

}  // namespace fyn::productionrules::testing
