#pragma once

#include <vector>

#include "tools/base/PrbContext.h"

namespace CLI {
class App;
}

namespace fyn::productionrules {

/** One row of prb's table of subcommands. */
struct Subcommand {
  const char* name;
  /** One line for `prb --help`. */
  const char* summary;
  /**
   * Gives `command` its options, a footer with examples, and the callback that does the work. What the
   * callback captures must live in it (a shared_ptr): it runs after this call has returned. It reports wrong
   * input as UsageError; any other exception is a failure of the run (exit status 1).
   */
  void (*add)(CLI::App& command, PrbContext& context);
};

/** All subcommands, in the order in which `prb --help` lists them. */
const std::vector<Subcommand>& subcommands();

}  // namespace fyn::productionrules
