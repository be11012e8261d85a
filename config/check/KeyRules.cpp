#include "config/check/KeyRules.h"

#include <algorithm>
#include <limits>

#include "config/check/NearestName.h"
#include "platform/SystemProperties.h"

namespace fyn::productionrules {

namespace {

constexpr std::int32_t kLargest = std::numeric_limits<std::int32_t>::max();

/** Keys whose numbers are names. */
struct SpecialRange {
  std::string_view field;
  ValueRange range;
};
constexpr std::array kSpecialRanges{
    SpecialRange{"prLogLevel", {0, 4}},
    SpecialRange{"framingMode", {0, 5}},
    SpecialRange{"fynOperatingMode", {0, 2}},
};

bool isSwitch(const ConfigKey& key) {
  return std::holds_alternative<bool PrConfig::*>(key.field);
}

/** Of any size. */
bool isWholeNumber(std::string_view text) {
  if (!text.empty() && text.front() == '-') {
    text.remove_prefix(1);
  }
  return !text.empty() && std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

std::optional<std::string> faultOfSwitch(const ConfigKey& key, const std::string& value) {
  if (key.source == ConfigSource::Property) {
    return parsePropertyBool(value) ? std::nullopt
                                    : std::optional("must be 1 or 0 (or true, false), not '" + value + "'");
  }
  if (value == "1" || value == "0") {
    return std::nullopt;
  }
  return "must be 1 or 0, not '" + value + "': in a configuration file anything but 1 is off";
}

}  // namespace

ValueRange rangeOf(const ConfigKey& key) {
  for (const SpecialRange& special : kSpecialRanges) {
    if (special.field == key.name) {
      return special.range;
    }
  }
  switch (key.unit) {
    case ConfigUnit::Percent:
      return {0, 100};
    case ConfigUnit::Switch:
      return {0, 1};
    case ConfigUnit::Milliseconds:
    case ConfigUnit::Seconds:
    case ConfigUnit::Pixels:
    case ConfigUnit::Number:
    case ConfigUnit::Count:
    case ConfigUnit::CameraId:
    case ConfigUnit::Factor:
      break;
  }
  return {0, kLargest};
}

const char* typeOf(const ConfigKey& key) {
  return isSwitch(key) ? "switch" : "integer";
}

std::string defaultOf(const ConfigKey& key) {
  return std::to_string(configValue(PrConfig::DEFAULT, key));
}

std::optional<std::string> faultOfValue(const ConfigKey& key, const std::string& value) {
  if (isSwitch(key)) {
    return faultOfSwitch(key, value);
  }
  if (!isWholeNumber(value)) {
    return "must be a whole number, not '" + value + "'";
  }
  const std::optional<int> number = parsePropertyInt(value);
  const ValueRange range = rangeOf(key);
  if (!number || *number < range.least || *number > range.most) {
    return "must be from " + std::to_string(range.least) + " to " + std::to_string(range.most) + ", not " +
           value;
  }
  return std::nullopt;
}

std::optional<std::string> faultOfProperty(const std::string& key, const std::string& value) {
  const ConfigKey* const row = findConfigKey(key);
  if (row == nullptr) {
    return "unknown property " + key + suggestionFor(key);
  }
  if (row->source == ConfigSource::File) {
    return key + " is set by the configuration file, not by a property";
  }
  const std::optional<std::string> fault = faultOfValue(*row, value);
  return fault ? std::optional(key + ' ' + *fault) : std::nullopt;
}

}  // namespace fyn::productionrules
