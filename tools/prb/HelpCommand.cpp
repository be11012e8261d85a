#include <CLI/CLI.hpp>
#include <memory>

#include "tools/base/UsageError.h"
#include "tools/prb/Commands.h"
#include "tools/prb/UnknownWord.h"

namespace fyn::productionrules {

namespace {

void explain(const CLI::App& root, const std::vector<std::string>& words, PrbContext& context) {
  const CLI::App* command = &root;
  std::string name = root.get_name();
  for (const std::string& word : words) {
    const auto named =
        command->get_subcommands([&word](const CLI::App* each) { return each->get_name() == word; });
    if (named.empty()) {
      throw UsageError(unknownCommand(*command, word) + " (see '" + name + " --help')");
    }
    command = named.front();
    name += ' ' + word;
  }
  context.out << command->get_formatter()->make_help(command, name, CLI::AppFormatMode::Normal);
}

}  // namespace

void addHelpCommand(CLI::App& command, PrbContext& context) {
  const auto words = std::make_shared<std::vector<std::string>>();
  command.add_option("command", *words, "The command, such as: config check")->type_name("COMMAND");
  command.footer(
      "Examples:\n"
      "  prb help            list all commands\n"
      "  prb help replay     the same as 'prb replay --help'");
  command.callback([words, &command, &context] { explain(*command.get_parent(), *words, context); });
}

}  // namespace fyn::productionrules
