#include "platform/MrJsonUtil.h"

#include <nlohmann/json.hpp>

namespace fyn::productionrules::MrJsonUtil {

void addMrForwardMsg(nlohmann::ordered_json& document, const std::string& from, const std::string& to,
                     bool retain) {
  document["forwards"].push_back({{"from", from}, {"to", to}, {"retain", retain}});
}

}  // namespace fyn::productionrules::MrJsonUtil
