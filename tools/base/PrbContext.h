#pragma once

#include <iosfwd>

#include "tools/base/UsageError.h"

namespace fyn::productionrules {

/** What a subcommand runs with: its streams, and the exit status that it leaves. */
struct PrbContext {
  std::istream& in;
  std::ostream& out;
  std::ostream& err;
  /** Whether a person reads the stream. Progress bars and screens that update appear only there. */
  bool outIsTerminal = false;
  bool errIsTerminal = false;
  int status = 0;
};

}  // namespace fyn::productionrules
