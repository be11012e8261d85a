#pragma once

#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

#include "tools/recording/RecordingEvent.h"

namespace CLI {
class App;
}

namespace fyn::productionrules {

/** Pairs of KEY=VALUE texts, as a command line gives them. Raises UsageError for any other text, and for
 * one that the service would pass over: a key that is nearly one of its own, or a wrong value. */
KeyValues keyValues(const std::vector<std::string>& texts);

/** `--property KEY=VALUE`, once for each. */
void addPropertyOption(
    CLI::App& command, std::vector<std::string>& properties,
    const char* meaning = "System property, whatever the recording says of it; repeatable");

/** `--config FILE` and `--property`, the settings of a service that a command runs. */
void addSettingsOptions(CLI::App& command, std::string& config, std::vector<std::string>& properties);

/** The same for another command line, each word with a blank before it; "" is no configuration. */
std::string settingsWords(const std::vector<std::string>& configs,
                          const std::vector<std::string>& properties);

/** The text of a configuration file; nothing for "". What the service would pass over in it is said on
 * `complaints`. Raises UsageError when the file cannot be read. */
std::optional<std::string> readConfiguration(const std::string& path, std::ostream& complaints);

/** The same; raises UsageError for the first fault in it. */
std::optional<std::string> readFaultlessConfiguration(const std::string& path);

}  // namespace fyn::productionrules
