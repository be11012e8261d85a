#pragma once

#include <array>
#include <optional>
#include <string_view>
#include <utility>

#include "tools/recording/RecordingEvent.h"

namespace fyn::productionrules {

inline constexpr std::array<std::pair<ProviderChange, std::string_view>, 4> kProviderChangeNames{{
    {ProviderChange::Up, "up"},
    {ProviderChange::Announced, "announced"},
    {ProviderChange::Down, "down"},
    {ProviderChange::Fail, "fail"},
}};

constexpr std::optional<ProviderChange> providerChangeOf(std::string_view text) {
  for (const auto& [change, name] : kProviderChangeNames) {
    if (name == text) {
      return change;
    }
  }
  return std::nullopt;
}

constexpr std::string_view providerChangeName(ProviderChange wanted) {
  for (const auto& [change, name] : kProviderChangeNames) {
    if (change == wanted) {
      return name;
    }
  }
  return {};
}

}  // namespace fyn::productionrules
