#pragma once

#include <array>
#include <cstddef>
#include <nlohmann/json.hpp>
#include <string_view>

namespace fyn::productionrules::fields {

/**
 * The members of an object by key, null for absent ones and for values that are no objects. `sortedKeys`
 * stands in ascending order, as the object's own members do, so one walk finds all of them.
 */
template <std::size_t N>
std::array<const nlohmann::json*, N> findMembers(const nlohmann::json& document,
                                                 const std::array<std::string_view, N>& sortedKeys) {
  std::array<const nlohmann::json*, N> members{};
  const auto* const object = document.get_ptr<const nlohmann::json::object_t*>();
  if (object == nullptr) {
    return members;
  }
  std::size_t index = 0;
  for (const auto& [key, value] : *object) {
    int order = 1;
    while (index < N && (order = sortedKeys[index].compare(key)) < 0) {
      ++index;
    }
    if (index == N) {
      break;
    }
    if (order == 0) {
      members[index++] = &value;
    }
  }
  return members;
}

}  // namespace fyn::productionrules::fields
