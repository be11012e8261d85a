#pragma once

#include "tools/prb/Subcommand.h"

namespace fyn::productionrules {

/** `prb simulate`. */
void addSimulateCommand(CLI::App& command, PrbContext& context);

}  // namespace fyn::productionrules
