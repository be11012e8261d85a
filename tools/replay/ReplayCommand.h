#pragma once

#include <string>
#include <vector>

#include "tools/prb/Subcommand.h"
#include "tools/recording/RecordingEvent.h"

namespace fyn::productionrules {

/** `prb replay`. */
void addReplayCommand(CLI::App& command, PrbContext& context);

/** Pairs of KEY=VALUE texts, as the command line gives them; raises UsageError for any other text. */
KeyValues keyValues(const std::vector<std::string>& texts);

}  // namespace fyn::productionrules
