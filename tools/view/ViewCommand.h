#pragma once

#include "tools/prb/Subcommand.h"

namespace fyn::productionrules {

/** `prb view`. */
void addViewCommand(CLI::App& command, PrbContext& context);

}  // namespace fyn::productionrules
