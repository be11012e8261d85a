#include <CLI/CLI.hpp>

#include "config/check/KeyRules.h"
#include "config/check/NearestName.h"
#include "platform/ServiceState.h"
#include "tools/live/LiveBus.h"
#include "tools/prb/Commands.h"

namespace fyn::productionrules {

namespace {

struct PropOptions {
  PlatformOptions platform;
  std::string key;
  std::string value;
  bool force = false;
};

const ConfigKey& knownKey(const std::string& key) {
  const ConfigKey* const row = findConfigKey(key);
  if (row == nullptr) {
    throw UsageError("unknown property " + key + suggestionFor(key));
  }
  return *row;
}

void runGet(const PropOptions& options, PrbContext& context) {
  const auto platform = toolPlatform(options.platform);
  const std::optional<std::string> value = ServiceState::current().properties().get(options.key);
  if (!value) {
    const ConfigKey& row = knownKey(options.key);
    context.err << options.key
                << (row.source == ConfigSource::File
                        ? " is set by the configuration file; this is its default\n"
                        : " is not set; its default holds\n");
    context.out << defaultOf(row) << '\n';
    return;
  }
  context.out << *value << '\n';
}

void runSet(const PropOptions& options, PrbContext& /*context*/) {
  const std::optional<std::string> fault = faultOfProperty(options.key, options.value);
  if (fault && !options.force) {
    throw UsageError(*fault);
  }
  const auto platform = toolPlatform(options.platform);
  storeProperty(options.platform, options.key, options.value);
}

void runUnset(const PropOptions& options, PrbContext& context) {
  const auto platform = toolPlatform(options.platform);
  if (!ServiceState::current().properties().get(options.key)) {
    knownKey(options.key);
    context.err << options.key << " is not set; its default holds\n";
    return;
  }
  unsetProperty(options.platform, options.key);
}

void listRows(ConfigSource source, const char* title, const std::map<std::string, std::string>& values,
              std::ostream& out) {
  out << title << '\n';
  for (const ConfigKey& row : kConfigKeys) {
    if (row.source != source) {
      continue;
    }
    const auto value = values.find(std::string(row.key));
    const std::string_view unit =
        row.unit == ConfigUnit::Switch ? std::string_view() : configUnitText(row.unit);
    out << "  " << row.key << '\n' << "      " << typeOf(row);
    if (!unit.empty()) {
      out << " (" << unit << ')';
    }
    out << ", default " << defaultOf(row);
    if (source == ConfigSource::Property) {
      out << (value == values.end() ? std::string(", not set") : ", set to " + value->second);
    }
    out << "\n      " << row.meaning << '\n';
  }
}

void runList(const PropOptions& options, PrbContext& context) {
  const auto platform = toolPlatform(options.platform);
  std::map<std::string, std::string> values;
  ServiceState::current().properties().forEach(
      [&values](const std::string& key, const std::string& value) { values.emplace(key, value); });
  listRows(ConfigSource::Property, "Properties", values, context.out);
  context.out << "Properties that the service does not know\n";
  for (const auto& [key, value] : values) {
    const ConfigKey* const row = findConfigKey(key);
    if (row == nullptr || row->source != ConfigSource::Property) {
      context.out << "  " << key << '=' << value << '\n';
    }
  }
  listRows(ConfigSource::File, "Keys of the configuration file (prb config example)", values, context.out);
}

}  // namespace

void addPropCommand(CLI::App& command, PrbContext& context) {
  const auto options = std::make_shared<PropOptions>();
  command.require_subcommand(1);
  addPropertiesOption(command, options->platform);
  command.fallthrough();
  CLI::App* const get = command.add_subcommand("get", "Print the value of a property, or its default");
  get->add_option("key", options->key, "The property")->type_name("KEY")->required();
  get->callback([options, &context] { runGet(*options, context); });
  CLI::App* const set =
      command.add_subcommand("set", "Set a property; a service reads it with its next reload");
  set->add_option("key", options->key, "The property")->type_name("KEY")->required();
  set->add_option("value", options->value, "Its new value")->type_name("VALUE")->required();
  set->add_flag("--force", options->force, "Set it even when the service knows no such key or value");
  set->callback([options, &context] { runSet(*options, context); });
  CLI::App* const unset = command.add_subcommand("unset", "Take a property out, so that its default holds");
  unset->add_option("key", options->key, "The property")->type_name("KEY")->required();
  unset->callback([options, &context] { runUnset(*options, context); });
  CLI::App* const list =
      command.add_subcommand("list", "Print every key: type, unit, default, value, meaning");
  list->callback([options, &context] { runList(*options, context); });
  command.footer(
      "Examples:\n"
      "  prb prop list\n"
      "  prb prop set vendor.talkertracking.flag 4    people framing from the next reload on\n"
      "  prb prop unset vendor.talkertracking.flag    back to the default\n"
      "  prb prop get persist.tvpr.zoomInLimit");
}

}  // namespace fyn::productionrules
