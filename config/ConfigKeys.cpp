#include "config/ConfigKeys.h"

#include <algorithm>
#include <vector>

namespace fyn::productionrules {

std::int32_t configValue(const PrConfig& config, const ConfigKey& key) {
  return std::visit([&](auto field) { return static_cast<std::int32_t>(config.*field); }, key.field);
}

void setConfigValue(PrConfig& config, const ConfigKey& key, std::int32_t value) {
  if (const auto* const flag = std::get_if<bool PrConfig::*>(&key.field)) {
    config.*(*flag) = value != 0;
  } else if (const auto* const mode = std::get_if<FynOperatingMode PrConfig::*>(&key.field)) {
    config.*(*mode) = static_cast<FynOperatingMode>(value);
  } else {
    config.*std::get<std::int32_t PrConfig::*>(key.field) = value;
  }
}

const ConfigKey* findConfigKey(std::string_view key) {
  static const std::vector<const ConfigKey*> sorted = [] {
    std::vector<const ConfigKey*> rows;
    for (const ConfigKey& row : kConfigKeys) {
      if (row.source != ConfigSource::Fixed) {
        rows.push_back(&row);
      }
    }
    std::sort(rows.begin(), rows.end(),
              [](const ConfigKey* a, const ConfigKey* b) { return a->key < b->key; });
    return rows;
  }();
  const auto found =
      std::lower_bound(sorted.begin(), sorted.end(), key,
                       [](const ConfigKey* row, std::string_view text) { return row->key < text; });
  return found != sorted.end() && (*found)->key == key ? *found : nullptr;
}

std::string_view configKeyOf(std::int32_t PrConfig::*field) {
  const auto row = std::find_if(kConfigKeys.begin(), kConfigKeys.end(),
                                [&](const ConfigKey& each) { return each.field == ConfigField(field); });
  return row != kConfigKeys.end() ? row->key : std::string_view();
}

std::string_view configUnitText(ConfigUnit unit) {
  switch (unit) {
    case ConfigUnit::Milliseconds:
      return "ms";
    case ConfigUnit::Seconds:
      return "s";
    case ConfigUnit::Percent:
      return "%";
    case ConfigUnit::Pixels:
      return "px";
    case ConfigUnit::Switch:
      return "0 or 1";
    case ConfigUnit::Number:
    case ConfigUnit::Count:
    case ConfigUnit::CameraId:
    case ConfigUnit::Factor:
      break;
  }
  return "";
}

}  // namespace fyn::productionrules
