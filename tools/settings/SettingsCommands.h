#pragma once

#include "tools/prb/Subcommand.h"

namespace fyn::productionrules {

/** `prb config`. */
void addConfigCommand(CLI::App& command, PrbContext& context);

/** `prb prop`. */
void addPropCommand(CLI::App& command, PrbContext& context);

}  // namespace fyn::productionrules
