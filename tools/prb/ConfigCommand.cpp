#include <CLI/CLI.hpp>

#include "config/ExampleConfiguration.h"
#include "config/check/ConfigCheck.h"
#include "tools/base/InputFile.h"
#include "tools/prb/Commands.h"
#include "tools/settings/PresetUse.h"

namespace fyn::productionrules {

namespace {

constexpr int kFaultsFound = 1;

void runCheck(const std::string& path, const std::string& mode, PrbContext& context) {
  InputFile file(path, context.in);
  const std::string text{std::istreambuf_iterator<char>(file.stream()), std::istreambuf_iterator<char>()};
  const std::vector<ConfigFault> faults = checkConfiguration(text);
  for (const ConfigFault& fault : faults) {
    context.out << file.name() << ':' << fault.line << ": " << fault.text << '\n';
  }
  const std::string misuse = mode.empty() ? std::string() : presetMisuse(text, framingModeNamed(mode));
  if (!misuse.empty()) {
    context.out << file.name() << ": " << misuse << '\n';
  }
  if (faults.empty() && misuse.empty()) {
    context.out << file.name() << ": no faults\n";
  } else {
    context.status = kFaultsFound;
  }
}

}  // namespace

void addConfigCommand(CLI::App& command, PrbContext& context) {
  command.require_subcommand(1);
  const auto path = std::make_shared<std::string>();
  const auto mode = std::make_shared<std::string>();
  CLI::App* const check =
      command.add_subcommand("check", "Find unknown keys and wrong values; exit status 1 when there are any");
  check->add_option("file", *path, "The configuration file; '-' is standard input")
      ->type_name("FILE")
      ->required();
  check
      ->add_option("--mode", *mode,
                   "The framing of the device, to find a preset for another one: group, people, speaker or "
                   "multistream")
      ->check(CLI::IsMember(framingModeNames()));
  check->callback([path, mode, &context] { runCheck(*path, *mode, context); });
  CLI::App* const example = command.add_subcommand("example", "Print a file with every key and its default");
  example->callback([&context] { context.out << exampleConfiguration(); });
  CLI::App* const list =
      command.add_subcommand("list", "List the presets: configurations that have proved good");
  list->callback([&context] { context.out << presetList(); });
  const auto name = std::make_shared<std::string>();
  CLI::App* const preset = command.add_subcommand("preset", "Print a preset as a configuration file");
  preset->add_option("name", *name, "The preset, as 'prb config list' names it")->required();
  preset->callback([name, &context] { context.out << presetNamed(*name); });
  command.footer(
      "Examples:\n"
      "  prb config check /etc/fyn.conf\n"
      "  prb config example > fyn.conf\n"
      "  prb config preset recommended > /etc/fyn.conf\n"
      "  prb config check /etc/fyn.conf --mode people");
}

}  // namespace fyn::productionrules
