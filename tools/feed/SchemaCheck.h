#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

namespace fyn::productionrules {

/**
 * What is wrong with a document by the published schema of the file `name`, such as "camera.json". Each fault
 * names its place without positions ("heads[].fynId is missing"), so that the same fault of many documents is
 * the same text. Knows the keywords that the schemas of incoming documents use; raises std::logic_error for
 * another one.
 */
std::vector<std::string> schemaFaults(const std::string& name, const nlohmann::json& document);

}  // namespace fyn::productionrules
