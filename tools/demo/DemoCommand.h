#pragma once

#include "tools/prb/Subcommand.h"

namespace fyn::productionrules {

/** `prb demo`, the job of ./run. */
void addDemoCommand(CLI::App& command, PrbContext& context);

}  // namespace fyn::productionrules
