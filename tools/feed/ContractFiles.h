#pragma once

#include <string_view>

namespace fyn::productionrules {

/**
 * The content of a file of api/schemas, such as "camera.json", as it is built into the program; "" for a name
 * that is none. The build makes this function.
 */
std::string_view contractFile(std::string_view name);

}  // namespace fyn::productionrules
