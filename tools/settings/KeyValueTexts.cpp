#include "tools/settings/KeyValueTexts.h"

#include <CLI/CLI.hpp>
#include <ostream>

#include "config/check/ConfigCheck.h"
#include "config/check/KeyRules.h"
#include "config/check/NearestName.h"
#include "platform/TextFile.h"
#include "tools/base/ShellWord.h"
#include "tools/base/UsageError.h"

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

void addSettingsOptions(CLI::App& command, std::string& config, std::vector<std::string>& properties) {
  command
      .add_option("--config", config,
                  "Configuration file of the service; without it that of the recording, else all defaults")
      ->type_name("FILE");
  addPropertyOption(command, properties);
}

std::string settingsWords(const std::vector<std::string>& configs,
                          const std::vector<std::string>& properties) {
  std::string words;
  for (const std::string& config : configs) {
    words += config.empty() ? "" : " --config " + shellWord(config);
  }
  for (const std::string& property : properties) {
    words += " --property " + shellWord(property);
  }
  return words;
}

namespace {

std::optional<std::string> readExisting(const std::string& path) {
  if (path.empty()) {
    return std::nullopt;
  }
  std::optional<std::string> text = readTextFile(path);
  if (!text) {
    throw UsageError("cannot read the configuration file " + path);
  }
  return text;
}

std::string placed(const std::string& path, const ConfigFault& fault) {
  return path + ':' + std::to_string(fault.line) + ": " + fault.text;
}

}  // namespace

std::optional<std::string> readConfiguration(const std::string& path, std::ostream& complaints) {
  std::optional<std::string> text = readExisting(path);
  for (const ConfigFault& fault : checkConfiguration(text.value_or(""))) {
    complaints << placed(path, fault) << '\n';
  }
  return text;
}

std::optional<std::string> readFaultlessConfiguration(const std::string& path) {
  std::optional<std::string> text = readExisting(path);
  const std::vector<ConfigFault> faults = checkConfiguration(text.value_or(""));
  if (!faults.empty()) {
    throw UsageError(placed(path, faults.front()));
  }
  return text;
}

}  // namespace fyn::productionrules
