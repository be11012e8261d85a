#include <CLI/CLI.hpp>

#include "config/ExampleConfiguration.h"
#include "tools/base/NamedStream.h"
#include "tools/prb/Commands.h"
#include "tools/settings/ConfigCheck.h"

namespace fyn::productionrules {

namespace {

constexpr int kFaultsFound = 1;

void runCheck(const std::string& path, PrbContext& context) {
  InputFile file(path, context.in);
  const std::string text{std::istreambuf_iterator<char>(file.stream()), std::istreambuf_iterator<char>()};
  const std::vector<ConfigFault> faults = checkConfiguration(text);
  for (const ConfigFault& fault : faults) {
    context.out << file.name() << ':' << fault.line << ": " << fault.text << '\n';
  }
  if (faults.empty()) {
    context.out << file.name() << ": no faults\n";
  } else {
    context.status = kFaultsFound;
  }
}

}  // namespace

void addConfigCommand(CLI::App& command, PrbContext& context) {
  command.require_subcommand(1);
  const auto path = std::make_shared<std::string>();
  CLI::App* const check =
      command.add_subcommand("check", "Find unknown keys and wrong values; exit status 1 when there are any");
  check->add_option("file", *path, "The configuration file; '-' is standard input")
      ->type_name("FILE")
      ->required();
  check->callback([path, &context] { runCheck(*path, context); });
  CLI::App* const example = command.add_subcommand("example", "Print a file with every key and its default");
  example->callback([&context] { context.out << exampleConfiguration(); });
  command.footer(
      "Examples:\n"
      "  prb config check /etc/fyn.conf\n"
      "  prb config example > fyn.conf");
}

}  // namespace fyn::productionrules
