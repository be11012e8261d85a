#pragma once

#include "tools/prb/Subcommand.h"

namespace fyn::productionrules {

/** `prb completion bash`. */
void addCompletionCommand(CLI::App& command, PrbContext& context);

}  // namespace fyn::productionrules
