#pragma once

#include <string>

namespace fyn::productionrules {

/** Raises the UsageError of a file that could not be opened for `purpose` just now ("reading"), with the
 * reason. */
[[noreturn]] void cannotOpen(const std::string& path, const char* purpose);

}  // namespace fyn::productionrules
