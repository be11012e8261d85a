#pragma once

#include "tools/prb/Subcommand.h"

/** What gives each command of prb its options and its work; the rows of the table in Subcommands.cpp. */
namespace fyn::productionrules {

void addDemoCommand(CLI::App& command, PrbContext& context);
void addReplayCommand(CLI::App& command, PrbContext& context);
void addReportCommand(CLI::App& command, PrbContext& context);
void addCompareCommand(CLI::App& command, PrbContext& context);
void addTuneCommand(CLI::App& command, PrbContext& context);
void addWhyCommand(CLI::App& command, PrbContext& context);
void addImportCommand(CLI::App& command, PrbContext& context);
void addSimulateCommand(CLI::App& command, PrbContext& context);
void addViewCommand(CLI::App& command, PrbContext& context);
void addRecordCommand(CLI::App& command, PrbContext& context);
void addPlayCommand(CLI::App& command, PrbContext& context);
void addWatchCommand(CLI::App& command, PrbContext& context);
void addCheckFeedCommand(CLI::App& command, PrbContext& context);
void addCtlCommand(CLI::App& command, PrbContext& context);
void addPropCommand(CLI::App& command, PrbContext& context);
void addConfigCommand(CLI::App& command, PrbContext& context);
void addHelpCommand(CLI::App& command, PrbContext& context);
void addCompletionCommand(CLI::App& command, PrbContext& context);

}  // namespace fyn::productionrules
