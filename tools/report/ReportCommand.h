#pragma once

#include "tools/prb/Subcommand.h"

namespace fyn::productionrules {

/** `prb report`. */
void addReportCommand(CLI::App& command, PrbContext& context);

}  // namespace fyn::productionrules
