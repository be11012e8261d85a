#include <CLI/CLI.hpp>
#include <algorithm>
#include <map>
#include <ostream>

#include "config/ConfigKeys.h"
#include "tools/prb/Commands.h"

namespace fyn::productionrules {

namespace {

using Words = std::vector<std::string>;

/** What may follow the words of a command ("prb ctl"), or "=" and an option behind these ("prb
 * replay=--log"). */
using WordsByPlace = std::map<std::string, Words>;

void add(Words& words, const std::string& word) {
  if (std::find(words.begin(), words.end(), word) == words.end()) {
    words.push_back(word);
  }
}

Words keysOf(ConfigSource source) {
  Words keys;
  for (const ConfigKey& row : kConfigKeys) {
    if (row.source == source) {
      keys.emplace_back(row.key);
    }
  }
  return keys;
}

/** What its type in the help tells: "LEVEL:{E,W}" is one of these, "KEY" a key. Files complete by themselves.
 */
Words valuesOf(const CLI::Option& option) {
  const std::string type = option.get_type_name();
  const std::size_t open = type.find('{');
  const std::size_t close = type.rfind('}');
  if (open != std::string::npos && close != std::string::npos) {
    return CLI::detail::split(type.substr(open + 1, close - open - 1), ',');
  }
  if (type.rfind("KEY", 0) == 0) {
    return keysOf(type.find("FROM") == std::string::npos ? ConfigSource::Property : ConfigSource::File);
  }
  return {};
}

void addOptions(WordsByPlace& places, const std::string& place, const CLI::App& command) {
  for (const CLI::Option* option : command.get_options()) {
    const Words values = option->get_items_expected_max() > 0 ? valuesOf(*option) : Words();
    Words names;
    for (const std::string& name : option->get_lnames()) {
      add(names, "--" + name);
    }
    for (const std::string& name : option->get_snames()) {
      add(names, "-" + name);
    }
    for (const std::string& word : option->get_positional() ? values : names) {
      add(places[place], word);
    }
    for (const std::string& name : names) {
      if (!values.empty()) {
        places[std::string(place).append("=").append(name)] = values;
      }
    }
  }
}

/** Of `command` and all beneath it; the options of one above it, too, when that takes what it leaves. */
void addPlaces(WordsByPlace& places, const CLI::App& command, const std::string& place) {
  for (const CLI::App* inner : command.get_subcommands({})) {
    add(places[place], inner->get_name());
    addPlaces(places, *inner, place + ' ' + inner->get_name());
  }
  addOptions(places, place, command);
  const CLI::App* const above = command.get_parent();
  if (command.get_fallthrough() && above != nullptr && above->get_parent() != nullptr) {
    addOptions(places, place, *above);
  }
}

WordsByPlace placesOf(const CLI::App& root) {
  WordsByPlace places;
  addPlaces(places, root, root.get_name());
  return places;
}

void writeComment(std::ostream& out, const std::string& shell, const std::string& use) {
  out << "# Completion of prb for " << shell << ": " << use << '\n';
}

/** A word that makes no longer place is an argument and is passed over. */
void writeBashFunctions(std::ostream& out, const CLI::App& root) {
  out << "_prb_words() {\n  local words=''\n  case \"$1\" in\n";
  for (const auto& [place, words] : placesOf(root)) {
    out << "    '" << place << "') words='" << CLI::detail::join(words, " ") << "' ;;\n";
  }
  out << "    *) return 1 ;;\n  esac\n  printf '%s' \"$words\"\n}\n"
         "_prb() {\n"
         "  local current=\"${COMP_WORDS[COMP_CWORD]}\" place='prb' i\n"
         "  for ((i = 1; i < COMP_CWORD; ++i)); do\n"
         "    _prb_words \"$place ${COMP_WORDS[i]}\" >/dev/null && place=\"$place ${COMP_WORDS[i]}\"\n"
         "  done\n"
         "  local valued=\"$place=${COMP_WORDS[COMP_CWORD-1]}\"\n"
         "  _prb_words \"$valued\" >/dev/null && place=\"$valued\"\n"
         "  COMPREPLY=($(compgen -W \"$(_prb_words \"$place\")\" -- \"$current\"))\n}\n"
         "complete -o default -F _prb prb\n";
}

void writeBash(std::ostream& out, const CLI::App& root) {
  writeComment(out, "bash", "source <(prb completion bash)");
  writeBashFunctions(out, root);
}

/** zsh runs what is written for bash. */
void writeZsh(std::ostream& out, const CLI::App& root) {
  writeComment(out, "zsh", "source <(prb completion zsh)");
  out << "autoload -U +X compinit && compinit\nautoload -U +X bashcompinit && bashcompinit\n";
  writeBashFunctions(out, root);
}

void writeFish(std::ostream& out, const CLI::App& root) {
  writeComment(out, "fish", "prb completion fish | source");
  out << "function __prb_words\n  switch \"$argv[1]\"\n";
  for (const auto& [place, words] : placesOf(root)) {
    out << "    case '" << place << "'\n      printf '%s\\n' " << CLI::detail::join(words, " ") << '\n';
  }
  out << "    case '*'\n      return 1\n  end\nend\n"
         "function __prb\n"
         "  set -l words (commandline -opc)\n"
         "  set -l place prb\n"
         "  for word in $words[2..-1]\n"
         "    __prb_words \"$place $word\" >/dev/null; and set place \"$place $word\"\n"
         "  end\n"
         "  __prb_words \"$place=$words[-1]\"; or __prb_words $place\n"
         "end\n"
         "complete -c prb -a '(__prb)'\n";
}

struct Shell {
  const char* name;
  const char* summary;
  void (*write)(std::ostream& out, const CLI::App& root);
};

constexpr Shell kShells[] = {{"bash", "The script for bash", writeBash},
                             {"zsh", "The script for zsh", writeZsh},
                             {"fish", "The script for fish", writeFish}};

}  // namespace

void addCompletionCommand(CLI::App& command, PrbContext& context) {
  command.require_subcommand(1);
  command.footer(
      "Examples:\n"
      "  prb completion bash > ~/.local/share/bash-completion/completions/prb\n"
      "  prb completion fish > ~/.config/fish/completions/prb.fish\n"
      "  source <(prb completion zsh)    in the current shell, or in ~/.zshrc");
  for (const Shell& shell : kShells) {
    command.add_subcommand(shell.name, shell.summary)->callback([&command, &context, &shell] {
      shell.write(context.out, *command.get_parent());
    });
  }
}

}  // namespace fyn::productionrules
