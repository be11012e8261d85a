#include "tools/prb/Completion.h"

#include <CLI/CLI.hpp>
#include <ostream>

namespace fyn::productionrules {

namespace {

/** The words that may follow `command`: its own commands and its options. */
std::string wordsAfter(const CLI::App& command) {
  std::string words;
  const auto add = [&words](const std::string& word) { words += (words.empty() ? "" : " ") + word; };
  for (const CLI::App* inner : command.get_subcommands({})) {
    add(inner->get_name());
  }
  for (const CLI::Option* option : command.get_options()) {
    for (const std::string& name : option->get_lnames()) {
      add("--" + name);
    }
    for (const std::string& name : option->get_snames()) {
      add("-" + name);
    }
  }
  return words;
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
