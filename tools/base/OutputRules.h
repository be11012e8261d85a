#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace fyn::productionrules {

/** Which files a command may write. "" and "-" (standard output) are no files. */
struct OutputRules {
  /** Whether a file that is there may be replaced. */
  bool mayReplace = false;
  /** What the command reads; none of it is ever written. "-" is standard input. */
  std::vector<std::string> inputs;

  /** Raises UsageError when `path` is an input, also through a link, or is there and may not be replaced.
   * Devices and pipes are never replaced but written to. */
  void check(const std::string& path) const;
};

/** The option --force of a command that writes files. */
void addForceOption(CLI::App& command, OutputRules& rules);

/** Whether a path leads to something that holds bytes: no pipe, no device. False for one that is not there.
 */
bool isStoredFile(const std::string& path);

}  // namespace fyn::productionrules
