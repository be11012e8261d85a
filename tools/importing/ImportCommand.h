#pragma once

#include "tools/prb/Subcommand.h"

namespace fyn::productionrules {

/** `prb import`. */
void addImportCommand(CLI::App& command, PrbContext& context);

}  // namespace fyn::productionrules
