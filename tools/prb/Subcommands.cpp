#include "tools/prb/Completion.h"
#include "tools/prb/Subcommand.h"

namespace fyn::productionrules {

const std::vector<Subcommand>& subcommands() {
  static const std::vector<Subcommand> table{
      {"completion", "Print a completion script for the shell", addCompletionCommand},
  };
  return table;
}

}  // namespace fyn::productionrules
