#pragma once

#include "tools/prb/Subcommand.h"

namespace fyn::productionrules {

/** `prb tune`. */
void addTuneCommand(CLI::App& command, PrbContext& context);

}  // namespace fyn::productionrules
