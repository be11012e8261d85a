#include <CLI/CLI.hpp>
#include <algorithm>
#include <ostream>

#include "tools/prb/Commands.h"

namespace fyn::productionrules {

namespace {

using Words = std::vector<std::string>;

void add(Words& words, const std::string& word) {
  if (std::find(words.begin(), words.end(), word) == words.end()) {
    words.push_back(word);
  }
}

/** An argument whose type is written "{this,that}" is one of these. */
void addValues(Words& words, const CLI::Option& option) {
  const std::string type = option.get_type_name();
  if (option.get_positional() && type.size() > 2 && type.front() == '{') {
    for (const std::string& value : CLI::detail::split(type.substr(1, type.size() - 2), ',')) {
      add(words, value);
    }
  }
}

void addOptions(Words& words, const CLI::App& command) {
  for (const CLI::Option* option : command.get_options()) {
    addValues(words, *option);
    for (const std::string& name : option->get_lnames()) {
      add(words, "--" + name);
    }
    for (const std::string& name : option->get_snames()) {
      add(words, "-" + name);
    }
  }
}

/** The words that may follow `command`: its own commands, its options, and those of a command above it that
 * takes what it leaves. */
std::string wordsAfter(const CLI::App& command) {
  Words words;
  for (const CLI::App* inner : command.get_subcommands({})) {
    add(words, inner->get_name());
  }
  addOptions(words, command);
  const CLI::App* const above = command.get_parent();
  if (command.get_fallthrough() && above != nullptr && above->get_parent() != nullptr) {
    addOptions(words, *above);
  }
  return CLI::detail::join(words, " ");
}

void writeCases(std::ostream& out, const CLI::App& command, const std::string& path) {
  out << "    '" << path << "') words='" << wordsAfter(command) << "' ;;\n";
  for (const CLI::App* inner : command.get_subcommands({})) {
    writeCases(out, *inner, path + ' ' + inner->get_name());
  }
}

/** A path is the command words so far; a word that makes no longer path is an argument and is passed over. */
void writeBash(std::ostream& out, const CLI::App& root) {
  const std::string& name = root.get_name();
  out << "# Completion of " << name << " for bash: source <(" << name << " completion bash)\n"
      << "_" << name << "_words() {\n  local words=''\n  case \"$1\" in\n";
  writeCases(out, root, name);
  out << "    *) return 1 ;;\n  esac\n  printf '%s' \"$words\"\n}\n"
      << "_" << name << "() {\n"
      << "  local current=\"${COMP_WORDS[COMP_CWORD]}\" path='" << name << "' i\n"
      << "  for ((i = 1; i < COMP_CWORD; ++i)); do\n"
      << "    _" << name
      << "_words \"$path ${COMP_WORDS[i]}\" >/dev/null && path=\"$path ${COMP_WORDS[i]}\"\n"
      << "  done\n"
      << "  COMPREPLY=($(compgen -W \"$(_" << name << "_words \"$path\")\" -- \"$current\"))\n}\n"
      << "complete -o default -F _" << name << " " << name << "\n";
}

}  // namespace

void addCompletionCommand(CLI::App& command, PrbContext& context) {
  command.require_subcommand(1);
  command.footer(
      "Examples:\n"
      "  prb completion bash > ~/.local/share/bash-completion/completions/prb\n"
      "  source <(prb completion bash)    in the current shell only");
  CLI::App* const bash = command.add_subcommand("bash", "The script for bash");
  bash->callback([&command, &context] { writeBash(context.out, *command.get_parent()); });
}

}  // namespace fyn::productionrules
