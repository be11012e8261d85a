#pragma once

#include <string>

namespace fyn::productionrules {

/** A text as one word of a shell's command line. */
std::string shellWord(const std::string& text);

}  // namespace fyn::productionrules
