#include "tools/prb/Commands.h"
#include "tools/prb/Subcommand.h"

namespace fyn::productionrules {

const std::vector<Subcommand>& subcommands() {
  static const std::vector<Subcommand> table{
      {"demo", "Play a meeting through the service and say what it decides and why", addDemoCommand},
      {"replay", "Run the service on a recording and write every effect", addReplayCommand},
      {"report", "Measure how good the framing of recordings is", addReportCommand},
      {"compare", "Measure what a change of configuration does to recordings", addCompareCommand},
      {"tune", "Search for the configurations with the best trade-offs", addTuneCommand},
      {"why", "Say why somebody was not in the picture, or why it changed", addWhyCommand},
      {"import", "Turn tracked boxes and speaker turns into a recording", addImportCommand},
      {"simulate", "Make the recording of a meeting that never took place", addSimulateCommand},
      {"view", "Serve a page that shows a recording or a running service", addViewCommand},
      {"record", "Record the bus of a running service", addRecordCommand},
      {"play", "Play a recording to the bus of a running service", addPlayCommand},
      {"watch", "Show what a running service does", addWatchCommand},
      {"check-feed", "Say what is wrong with what a vision pipeline sends", addCheckFeedCommand},
      {"ctl", "Control a running service", addCtlCommand},
      {"prop", "Get, set, unset and list system properties", addPropCommand},
      {"config", "Check a configuration file, or print an example", addConfigCommand},
      {"help", "Explain a command", addHelpCommand},
      {"completion", "Print a completion script for the shell", addCompletionCommand},
  };
  return table;
}

}  // namespace fyn::productionrules
