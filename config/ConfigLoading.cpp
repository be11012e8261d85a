#include <cstdlib>
#include <stdexcept>

#include "config/ConfigKeys.h"
#include "platform/ServiceState.h"
#include "platform/SystemProperties.h"
#include "platform/VisionSettings.h"

// What PrConfig does by walking the table of its keys.
namespace fyn::productionrules {

namespace {

constexpr const char* kTag = "PrConfig";

// The integer at the beginning of a text, 0 without one; strtol, because it is defined for numbers of any
// length.
std::int32_t leadingInt(const std::string& text) {
  return static_cast<std::int32_t>(std::strtol(text.c_str(), nullptr, 10));
}

// A file that cannot be used counts as missing.
std::optional<std::string> textOf(const std::string& path) {
  try {
    return ServiceState::current().files()(path);
  } catch (const std::runtime_error& fault) {
    PRB_LOGE(kTag, "the configuration file %s", fault.what());
    return std::nullopt;
  }
}

void readFile(const std::string& path, PrConfig& config) {
  const std::optional<std::string> text = textOf(path);
  if (!text) {
    return;
  }
  forEachConfigLine(*text, [&](std::string_view key, std::string_view value, int /*line*/) {
    const ConfigKey* const row = findConfigKey(key);
    if (row == nullptr || row->source != ConfigSource::File) {
      return;
    }
    const bool isSwitch = std::holds_alternative<bool PrConfig::*>(row->field);
    setConfigValue(config, *row,
                   isSwitch ? static_cast<std::int32_t>(value == "1") : leadingInt(std::string(value)));
  });
}

void readProperties(PrConfig& config) {
  ServiceState::current().properties().refresh();
  for (const ConfigKey& row : kConfigKeys) {
    if (row.source != ConfigSource::Property) {
      continue;
    }
    if (const auto* const number = std::get_if<std::int32_t PrConfig::*>(&row.field)) {
      PropertyIntItem(row.key.data()).readToArg(config.*(*number));
    } else if (const auto* const flag = std::get_if<bool PrConfig::*>(&row.field)) {
      PropertyBoolItem(row.key.data()).readToArg(config.*(*flag));
    }
  }
}

const char* operatingModeKey() {
  for (const ConfigKey& row : kConfigKeys) {
    if (std::holds_alternative<FynOperatingMode PrConfig::*>(row.field)) {
      return row.key.data();
    }
  }
  return "";
}

// The mode of the device: a value that is no mode leaves the one in force.
void readOperatingMode(const PrConfig& current, PrConfig& config) {
  int value = 0;
  PropertyIntItem(operatingModeKey()).readToArg(value);
  config.fynOperatingMode = current.fynOperatingMode;
  if (value == static_cast<int>(current.fynOperatingMode)) {
    return;
  }
  if (value < 0 || value > 2) {
    PRB_LOGE(kTag, "Invalid FynOperatingMode value: %d", value);
    return;
  }
  config.fynOperatingMode = static_cast<FynOperatingMode>(value);
}

bool isSame(const PrConfig& a, const PrConfig& b) {
  for (const ConfigKey& row : kConfigKeys) {
    if (configValue(a, row) != configValue(b, row)) {
      return false;
    }
  }
  return true;
}

}  // namespace

void PrConfig::onChange(const PrConfig& /*config*/) {}

void PrConfig::load(const std::string& path) {
  PrConfig loaded = DEFAULT;
  readFile(path, loaded);
  readProperties(loaded);
  readOperatingMode(get(), loaded);
  if (isSame(get(), loaded)) {
    return;
  }
  PRB_LOGI(kTag, "reloaded");
  get().logDiffs(loaded);
  onChange(loaded);
  set(loaded);
  VisionSettings::setLogLevel(loaded.prLogLevel);
}

void PrConfig::logDiffs(const PrConfig& other) const {
  for (const ConfigKey& row : kConfigKeys) {
    const std::int32_t before = configValue(*this, row);
    const std::int32_t after = configValue(other, row);
    if (before != after) {
      PRB_LOGI(kTag, "%s: %d -> %d", row.name.data(), before, after);
    }
  }
}

}  // namespace fyn::productionrules
