#pragma once

#include <string_view>

namespace fyn::productionrules {

/**
 * The content of a file of viewer/page, such as "viewer.js", or of "measuring.md", as it is built into the
 * program; "" for a name that is none. The build makes this function.
 */
std::string_view pageFile(std::string_view name);

}  // namespace fyn::productionrules
