#pragma once

#include <string>
#include <vector>

#include "tools/prb/Subcommand.h"

namespace fyn::productionrules {

/**
 * Runs `prb` with the arguments that follow the program's name. Returns the exit status: 0, 2 for wrong usage
 * or input, 1 for a run that failed; each error is one line on `context.err`.
 */
int runPrb(const std::vector<std::string>& arguments, PrbContext& context);

}  // namespace fyn::productionrules
