#include "tools/report/MetricDefinitions.h"

#include <nlohmann/json.hpp>
#include <sstream>
#include <string>

#include "tools/page/PageFiles.h"

namespace fyn::productionrules {

nlohmann::ordered_json metricDefinitions() {
  nlohmann::ordered_json definitions = nlohmann::ordered_json::object();
  std::istringstream page{std::string(pageFile("measuring.md"))};
  constexpr std::string_view kBetween = " | ";
  // A row is "| `name`, `name` | definition |".
  for (std::string row; std::getline(page, row);) {
    const std::size_t between = row.find(kBetween);
    if (row.rfind("| `", 0) != 0 || between == std::string::npos) {
      continue;
    }
    const std::size_t begin = between + kBetween.size();
    const std::string definition = row.substr(begin, row.rfind(" |") - begin);
    for (std::size_t name = 2; name < between;) {
      const std::size_t end = row.find('`', name + 1);
      definitions[row.substr(name + 1, end - name - 1)] = definition;
      name = row.find('`', end + 1);
    }
  }
  return definitions;
}

}  // namespace fyn::productionrules
