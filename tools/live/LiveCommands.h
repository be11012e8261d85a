#pragma once

#include "tools/prb/Subcommand.h"

namespace fyn::productionrules {

/** `prb record`. */
void addRecordCommand(CLI::App& command, PrbContext& context);

/** `prb play`. */
void addPlayCommand(CLI::App& command, PrbContext& context);

/** `prb watch`. */
void addWatchCommand(CLI::App& command, PrbContext& context);

/** `prb ctl`. */
void addCtlCommand(CLI::App& command, PrbContext& context);

}  // namespace fyn::productionrules
