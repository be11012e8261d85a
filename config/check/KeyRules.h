#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "config/ConfigKeys.h"

namespace fyn::productionrules {

/** The values that make sense for a key, both ends included. */
struct ValueRange {
  std::int32_t least;
  std::int32_t most;
};

ValueRange rangeOf(const ConfigKey& key);

/** "switch" or "integer". */
const char* typeOf(const ConfigKey& key);

/** The default as a person writes it. */
std::string defaultOf(const ConfigKey& key);

/** What is wrong with the value of a key where it comes from (a file or a property); nothing when it is good.
 */
std::optional<std::string> faultOfValue(const ConfigKey& key, const std::string& value);

/** What is wrong with a system property that somebody wants to set, its key included; nothing when it is
 * good. */
std::optional<std::string> faultOfProperty(const std::string& key, const std::string& value);

}  // namespace fyn::productionrules
