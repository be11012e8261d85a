#include "tools/base/ShellWord.h"

namespace fyn::productionrules {

std::string shellWord(const std::string& text) {
  std::string word = "'";
  for (const char c : text) {
    word += c == '\'' ? std::string("'\\''") : std::string(1, c);
  }
  return word + "'";
}

}  // namespace fyn::productionrules
