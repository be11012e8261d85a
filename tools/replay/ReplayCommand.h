#pragma once

#include "tools/prb/Subcommand.h"

namespace fyn::productionrules {

/** `prb replay`. */
void addReplayCommand(CLI::App& command, PrbContext& context);

}  // namespace fyn::productionrules
