#pragma once

#include <array>
#include <cstddef>
#include <string_view>
#include <variant>

#include "config/PrConfig.h"

namespace fyn::productionrules {

/** Where a tunable comes from. */
enum class ConfigSource { File, Property, Fixed };

enum class ConfigUnit { Milliseconds, Seconds, Percent, Pixels, Switch, Number, Count, CameraId, Factor };

/** The field of PrConfig that a row sets; its alternative is the row's kind. */
using ConfigField = std::variant<std::int32_t PrConfig::*, bool PrConfig::*, FynOperatingMode PrConfig::*>;

/** One row of the table of tunables. */
struct ConfigKey {
  std::string_view name;
  ConfigSource source;
  /** Empty for a Fixed row. */
  std::string_view key;
  ConfigField field;
  ConfigUnit unit;
  std::string_view meaning;
};

/** All rows, in the order in which differences are reported. */
inline constexpr std::array kConfigKeys{
#define X(field, source, kind, key, defaultValue, unit, meaning) \
  ConfigKey{#field, ConfigSource::source, key, &PrConfig::field, ConfigUnit::unit, meaning},
#include "config/ConfigTable.inc"
#undef X
};

/** The value of a row's field as an integer; switches as 0 and 1. */
std::int32_t configValue(const PrConfig& config, const ConfigKey& key);

/** Sets a row's field; a switch is on for any value but 0. */
void setConfigValue(PrConfig& config, const ConfigKey& key, std::int32_t value);

/** The row of a key text, or null. */
const ConfigKey* findConfigKey(std::string_view key);

/** The key that sets a field; empty for a Fixed row. */
std::string_view configKeyOf(std::int32_t PrConfig::*field);

/** "ms", "s", "%", "px", ... ; empty for plain numbers. */
std::string_view configUnitText(ConfigUnit unit);

}  // namespace fyn::productionrules
