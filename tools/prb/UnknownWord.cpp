#include "tools/prb/UnknownWord.h"

#include <CLI/CLI.hpp>

#include "config/check/NearestName.h"

namespace fyn::productionrules {

namespace {

std::string unknown(const char* kind, const std::string& word, const std::vector<std::string>& names) {
  return std::string("unknown ") + kind + ' ' + word + suggestionFor(word, {names.begin(), names.end()});
}

}  // namespace

std::string unknownCommand(const CLI::App& command, const std::string& word) {
  std::vector<std::string> names;
  for (const CLI::App* inner : command.get_subcommands({})) {
    names.push_back(inner->get_name());
  }
  return unknown("command", word, names);
}

std::string unknownOption(const CLI::App& command, const std::string& word) {
  std::vector<std::string> names;
  for (const CLI::Option* option : command.get_options()) {
    for (const std::string& name : option->get_lnames()) {
      names.push_back("--" + name);
    }
  }
  return unknown("option", word, names);
}

}  // namespace fyn::productionrules
