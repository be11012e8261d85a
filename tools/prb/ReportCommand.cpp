#include <CLI/CLI.hpp>
#include <algorithm>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>

#include "platform/ServiceState.h"
#include "tools/base/OutputFile.h"
#include "tools/base/UsageError.h"
#include "tools/page/DataPage.h"
#include "tools/prb/Commands.h"
#include "tools/report/Comparison.h"
#include "tools/report/MeasureRecordings.h"
#include "tools/report/MetricTable.h"
#include "tools/report/Metrics.h"
#include "tools/report/ReportJson.h"
#include "tools/report/WaitTable.h"
#include "tools/settings/KeyValueTexts.h"

namespace fyn::productionrules {

namespace {

struct ReportArguments {
  std::vector<std::string> recordings;
  std::string config;
  std::vector<std::string> properties;
  std::string json;
  std::string html;
  std::optional<int> stream;
  bool timing = false;
  OutputRules rules;
};

void checkStream(const ReportArguments& arguments, const std::vector<MeasuredRecording>& recordings) {
  const bool isShown = std::any_of(recordings.begin(), recordings.end(), [](const auto& recording) {
    return !recording.measurement.timeLine.changes.empty();
  });
  if (arguments.stream && !isShown) {
    throw UsageError("no recording shows anything on stream " + std::to_string(*arguments.stream));
  }
}

void runReport(ReportArguments& arguments, PrbContext& context) {
  checkRecordingNames(arguments.recordings);
  arguments.rules.inputs = arguments.recordings;
  arguments.rules.inputs.push_back(arguments.config);
  requireWritable(arguments.json, arguments.rules);
  requireWritable(arguments.html, arguments.rules);
  const MeasuredSetup setup{readConfiguration(arguments.config, context.err), keyValues(arguments.properties),
                            arguments.stream};
  const std::vector<MeasuredRecording> recordings =
      measureRecordings(arguments.recordings, {setup}, context).front();
  checkStream(arguments, recordings);
  if (arguments.json != "-") {
    writeMetricTable(context.out, metrics(), recordings);
    if (arguments.timing) {
      context.out << '\n';
      writeMetricTable(context.out, timingMetrics(), recordings);
    }
    const Measurement all = overall(recordings);
    writeWaitTable(context.out, all);
    context.out << "\nMeasured against " << measuredAgainst(all) << ".\n";
    if (recordings.size() < kFewestRecordings) {
      context.out << "Too few recordings to say anything about other meetings: that takes "
                  << kFewestRecordings << ".\n";
    }
  }
  writeJsonFile(reportAsJson(recordings, arguments.timing), arguments.json, arguments.rules, context.out);
  if (!arguments.html.empty()) {
    OutputFile output(arguments.html, arguments.rules, context.out);
    writeDataPage(output.stream(), reportPageData(recordings, arguments.timing,
                                                  {PR_VERSION, ServiceState::current().clock().wallMs()}));
    output.finish();
  }
}

}  // namespace

void addReportCommand(CLI::App& command, PrbContext& context) {
  const auto arguments = std::make_shared<ReportArguments>();
  command.add_option("recordings", arguments->recordings, "The recordings to measure; - for standard input")
      ->type_name("RECORDING")
      ->required();
  addSettingsOptions(command, arguments->config, arguments->properties);
  command
      .add_option("--json", arguments->json,
                  "Write the figures as JSON; - for standard output, without the table")
      ->type_name("FILE");
  command.add_option("--html", arguments->html, "Write a page with plots")->type_name("FILE");
  command.add_option("--stream", arguments->stream, "Measure only this output stream; 0 shows everybody")
      ->type_name("ID");
  command.add_flag("--timing", arguments->timing,
                   "Report the time that a decision takes too; it differs from run to run");
  addForceOption(command, arguments->rules);
  command.footer(
      "Replays meetings and measures how good the framing is: how often the picture changes, who is in view, "
      "how\n"
      "people stand in the picture, how long it takes to answer what happens in the room.\n"
      "\n"
      "Examples:\n"
      "  prb report meeting.jsonl --html report.html\n"
      "  prb report monday.jsonl tuesday.jsonl --config quick.conf --json figures.json\n"
      "  prb simulate --seed 1 | prb report -");
  command.callback([arguments, &context] { runReport(*arguments, context); });
}

}  // namespace fyn::productionrules
