#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace fyn::productionrules {

struct ConfigFault {
  /** From 1. */
  int line = 0;
  std::string text;
};

/** What is wrong in the text of a configuration file, in order of the lines. */
std::vector<ConfigFault> checkConfiguration(std::string_view text);

}  // namespace fyn::productionrules
