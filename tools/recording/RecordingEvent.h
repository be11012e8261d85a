#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace fyn::productionrules {

/** Key and value texts, in the order in which they stand in the recording. */
using KeyValues = std::vector<std::pair<std::string, std::string>>;

struct TimePasses {};

struct BusMessage {
  std::string topic;
  std::string payload;
};

struct SetProperties {
  KeyValues values;
};

/** The whole content of the configuration file from now on. */
struct ReplaceConfig {
  KeyValues values;
};

/** The camera provider appears, dies, or fails its next call. */
enum class ProviderChange { Up, Down, Fail };

/** One line of a recording. */
struct RecordingEvent {
  /** Milliseconds from the start of the recording, 0 or more. */
  std::int64_t t = 0;
  std::variant<TimePasses, BusMessage, SetProperties, ReplaceConfig, ProviderChange> what;
};

}  // namespace fyn::productionrules
