#include <CLI/CLI.hpp>
#include <memory>
#include <optional>

#include "platform/VisionSettings.h"
#include "tools/base/InputFile.h"
#include "tools/base/OutputFile.h"
#include "tools/base/ProgressBar.h"
#include "tools/prb/Commands.h"
#include "tools/replay/EffectWriter.h"
#include "tools/replay/ImageSizeHint.h"
#include "tools/replay/ObserverList.h"
#include "tools/replay/OutputCheck.h"
#include "tools/replay/RecordingRun.h"
#include "tools/settings/KeyValueTexts.h"

namespace fyn::productionrules {

namespace {

struct ReplayArguments {
  std::string input;
  std::string output = "-";
  std::string config;
  std::vector<std::string> properties;
  std::string log;
  std::string dump;
  bool decisions = false;
  bool check = false;
  OutputRules rules;
};

int logLevelOf(const std::string& letter) {
  if (letter.empty()) {
    return 0;
  }
  return static_cast<int>(std::string("EWID").find(letter)) + VisionSettings::kErrorLevel;
}

ReplayOptions replayOptions(const ReplayArguments& arguments, PrbContext& context) {
  ReplayOptions options;
  options.configuration = readConfiguration(arguments.config, context.err);
  options.properties = keyValues(arguments.properties);
  options.logLevel = logLevelOf(arguments.log);
  requireWritable(arguments.dump, arguments.rules);
  options.dumpPath = arguments.dump;
  options.standardOutput = &context.err;
  return options;
}

void runReplay(ReplayArguments& arguments, PrbContext& context) {
  arguments.rules.inputs = {arguments.input, arguments.config};
  ReplayOptions options = replayOptions(arguments, context);
  InputFile input(arguments.input, context.in);
  std::optional<OutputFile> output;
  std::ostream nowhere(nullptr);
  if (!arguments.check || arguments.output != "-") {
    output.emplace(arguments.output, arguments.rules, context.out);
  }
  Replay* running = nullptr;
  const auto now = [&running] { return running->now(); };
  OutputCheck check(now);
  ImageSizeHint sizes;
  EffectWriter effects(output ? output->stream() : nowhere, now);
  ObserverList observers;
  observers.add(effects, effects);
  observers.add(check);
  options.decisions = arguments.decisions ? &effects : nullptr;
  Replay replay(options, observers);
  running = &replay;
  RecordingReader reader(input.stream(), input.name());
  ProgressBar bar(context.err, context.errIsTerminal && arguments.output != "-", "replay", input.size());
  try {
    runRecording(reader, replay, [&](const RecordingEvent& event) {
      bar.update(reader.bytesRead());
      check.expect(event);
      sizes.look(event);
    });
  } catch (const UsageError&) {
    // What the recording shows up to its fault is there to be looked at.
    if (output) {
      output->finish();
    }
    throw;
  }
  if (output) {
    output->finish();
  }
  if (!sizes.text().empty()) {
    context.err << sizes.text() << '\n';
  }
  if (arguments.check) {
    const OutputCheck::Verdict verdict = check.verdict();
    context.out << verdict.text << '\n';
    context.status = verdict.matches ? 0 : 1;
  }
}

}  // namespace

void addReplayCommand(CLI::App& command, PrbContext& context) {
  const auto arguments = std::make_shared<ReplayArguments>();
  command.add_option("input", arguments->input, "The recording; - for standard input")
      ->type_name("RECORDING")
      ->required();
  command.add_option("-o,--output", arguments->output, "Where the effects go; - for standard output")
      ->type_name("OUTPUT");
  addSettingsOptions(command, arguments->config, arguments->properties);
  command
      .add_option("--log", arguments->log,
                  "Write log lines too: E errors, W also warnings, I also information, D also debug (as far "
                  "as the service's own level, key persist.tvpr.logs, lets through)")
      ->type_name("LEVEL")
      ->check(CLI::IsMember({"E", "W", "I", "D"}));
  command.add_option("--dump", arguments->dump, "Takes the lines of the debug dump")->type_name("FILE");
  command.add_flag("--decisions", arguments->decisions, "Write every decision with its reason too");
  command.add_flag("--check", arguments->check,
                   "Compare what the recording holds of the service's messages (prb record --outputs) with "
                   "the replay's; exit status 1 when they differ");
  addForceOption(command, arguments->rules);
  command.footer(
      "Runs the whole service on a recording, as fast as it can, and writes one JSON line per effect: "
      "messages, calls of\n"
      "the camera provider, subscriptions, log lines. The same recording gives the same bytes.\n"
      "\n"
      "Examples:\n"
      "  prb replay meeting.jsonl -o effects.jsonl\n"
      "  prb replay meeting.jsonl --property vendor.talkertracking.flag=4 --log I | less\n"
      "  prb replay room.jsonl --check\n"
      "  prb simulate --seed 1 | prb replay - --config quick.conf --decisions");
  command.callback([arguments, &context] { runReplay(*arguments, context); });
}

}  // namespace fyn::productionrules
