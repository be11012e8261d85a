#pragma once

#include <string>

namespace CLI {
class App;
}

namespace fyn::productionrules {

/** "unknown command WORD", and which one of those of `command` may be meant. */
std::string unknownCommand(const CLI::App& command, const std::string& word);

/** "unknown option WORD", and which one of those of `command` may be meant. */
std::string unknownOption(const CLI::App& command, const std::string& word);

}  // namespace fyn::productionrules
