#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>

namespace fyn::productionrules::MrJsonUtil {

/**
 * Appends one entry {"from","to","retain"} to the "forwards" array of a forwarding document, which asks the
 * remote-forwarding service to carry topic `from` to other devices as `to`. A null document becomes an
 * object.
 */
void addMrForwardMsg(nlohmann::ordered_json& document, const std::string& from, const std::string& to,
                     bool retain);

}  // namespace fyn::productionrules::MrJsonUtil
