#pragma once

#include "tools/prb/Subcommand.h"

namespace fyn::productionrules {

/** `prb compare`. */
void addCompareCommand(CLI::App& command, PrbContext& context);

}  // namespace fyn::productionrules
