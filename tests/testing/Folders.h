#pragma once

#include <string>

namespace fyn::productionrules::testing {

/** The checkout. */
std::string sourceFolder();

/** Where the programs were built. */
std::string programFolder();

}  // namespace fyn::productionrules::testing
