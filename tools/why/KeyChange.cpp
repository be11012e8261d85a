#include "tools/why/KeyChange.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <string_view>

#include "config/check/KeyRules.h"

namespace fyn::productionrules {

namespace {

/** What waits are tried at, as hundredths of the value in force. */
constexpr std::array kWaitHundredths{0, 25, 50, 75, 150, 200, 400};
constexpr std::array kNumberHundredths{50, 200};
/** What is tried where nothing waits, in milliseconds. */
constexpr std::array kWaitsForNone{1000, 4000, 8000};
constexpr std::int32_t kPercentStep = 20;

/** Keys that never decide what is shown, or all waits at once. */
constexpr std::array<std::string_view, 9> kNeverTried{
    "prLogLevel",           "fynDebugFileEnabled",       "prPollTimerThreshold",
    "animationCutOnly",     "pfAnimationCutOnly",        "animationEnableEase",
    "cutAnimationDuration", "dissolveAnimationDuration", "easeAnimationDuration"};

/** The waits that are no wait of a decision. */
constexpr std::string_view kSpeakerTimes = "timersSf";

bool isWaitOfDecisions(const ConfigKey& key) {
  return key.name.rfind("timers", 0) == 0 && key.name.rfind(kSpeakerTimes, 0) != 0;
}

std::vector<std::int64_t> valuesFor(const ConfigKey& key, std::int64_t value) {
  std::vector<std::int64_t> values;
  switch (key.unit) {
    case ConfigUnit::Switch:
      return {1 - value};
    case ConfigUnit::Percent:
      return {value - kPercentStep, value + kPercentStep};
    case ConfigUnit::Milliseconds:
      if (value == 0) {
        return {kWaitsForNone.begin(), kWaitsForNone.end()};
      }
      for (const int hundredths : kWaitHundredths) {
        values.push_back(value * hundredths / 100);
      }
      return values;
    default:
      for (const int hundredths : kNumberHundredths) {
        values.push_back(value * hundredths / 100);
      }
      return values;
  }
}

}  // namespace

double sizeOf(const KeyChange& change) {
  const double difference = std::abs(static_cast<double>(change.to) - change.from);
  if (change.key->unit == ConfigUnit::Percent) {
    return difference / 100;
  }
  return difference / std::max({1, change.from, configValue(PrConfig::DEFAULT, *change.key)});
}

std::vector<KeyChange> coarseChanges(const ConfigKey& key, std::int32_t value) {
  const ValueRange range = rangeOf(key);
  std::vector<KeyChange> changes;
  for (const std::int64_t wanted : valuesFor(key, value)) {
    const auto to = static_cast<std::int32_t>(std::clamp<std::int64_t>(wanted, range.least, range.most));
    if (to != value) {
      changes.push_back({&key, value, to});
    }
  }
  return changes;
}

std::int32_t stepOf(const KeyChange& change) {
  constexpr std::int32_t kWaitStep = 100;
  return change.key->unit == ConfigUnit::Milliseconds && change.from >= kWaitStep ? kWaitStep : 1;
}

std::vector<const ConfigKey*> waitsNamed(const std::set<std::string>& keys) {
  std::vector<const ConfigKey*> rows;
  for (const std::string& key : keys) {
    const ConfigKey* const row = findConfigKey(key);
    if (row != nullptr && row->source == ConfigSource::File) {
      rows.push_back(row);
    }
  }
  return rows;
}

std::vector<const ConfigKey*> keysBesideWaits() {
  std::vector<const ConfigKey*> rows;
  for (const ConfigKey& key : kConfigKeys) {
    const bool isTried = std::find(kNeverTried.begin(), kNeverTried.end(), key.name) == kNeverTried.end();
    if (key.source == ConfigSource::File && isTried && !isWaitOfDecisions(key)) {
      rows.push_back(&key);
    }
  }
  return rows;
}

void applyTo(RecordingEvent& event, const KeyChange& change) {
  if (auto* const config = std::get_if<ReplaceConfig>(&event.what)) {
    // The last line for a key wins.
    config->values.emplace_back(change.key->key, std::to_string(change.to));
  }
}

}  // namespace fyn::productionrules
