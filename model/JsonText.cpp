#include "model/JsonText.h"

#include <cstddef>
#include <nlohmann/json.hpp>
#include <utility>
#include <vector>

namespace fyn::productionrules::fields {

namespace {

constexpr std::size_t kDeepest = 1000;

bool isNestedTooDeep(const nlohmann::json& document) {
  std::vector<std::pair<const nlohmann::json*, std::size_t>> open{{&document, 1}};
  while (!open.empty()) {
    const auto [value, depth] = open.back();
    open.pop_back();
    if (depth > kDeepest) {
      return true;
    }
    for (const nlohmann::json& element : *value) {
      if (element.is_structured()) {
        open.emplace_back(&element, depth + 1);
      }
    }
  }
  return false;
}

}  // namespace

std::string logText(const nlohmann::json& document) {
  return isNestedTooDeep(document) ? "(nested more than 1000 deep)" : document.dump();
}

}  // namespace fyn::productionrules::fields
