#include "tools/settings/KeyValueTexts.h"

#include <CLI/CLI.hpp>

#include "platform/TextFile.h"
#include "tools/base/UsageError.h"
#include "tools/settings/KeyRules.h"
#include "tools/settings/NearestKey.h"

namespace fyn::productionrules {

KeyValues keyValues(const std::vector<std::string>& texts) {
  KeyValues values;
  for (const std::string& text : texts) {
    const std::size_t equals = text.find('=');
    if (equals == std::string::npos || equals == 0) {
      throw UsageError("'" + text + "' must be KEY=VALUE");
    }
    std::string key = text.substr(0, equals);
    std::string value = text.substr(equals + 1);
    // Of a key that is like none of the service's own nobody knows what it is for.
    if (nearestKey(key) != nullptr) {
      if (const std::optional<std::string> fault = faultOfProperty(key, value)) {
        throw UsageError(*fault);
      }
    }
    values.emplace_back(std::move(key), std::move(value));
  }
  return values;
}

void addPropertyOption(CLI::App& command, std::vector<std::string>& properties, const char* meaning) {
  // One value each: what follows is the recording.
  command.add_option("--property", properties, meaning)->type_name("KEY=VALUE")->allow_extra_args(false);
}

std::optional<std::string> readConfiguration(const std::string& path) {
  if (path.empty()) {
    return std::nullopt;
  }
  std::optional<std::string> text = readTextFile(path);
  if (!text) {
    throw UsageError("cannot read the configuration file " + path);
  }
  return text;
}

}  // namespace fyn::productionrules
