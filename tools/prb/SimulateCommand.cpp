#include <CLI/CLI.hpp>

#include "tools/base/NamedStream.h"
#include "tools/base/ProgressBar.h"
#include "tools/meeting/MeetingOptions.h"
#include "tools/meeting/Simulation.h"
#include "tools/prb/Commands.h"

namespace fyn::productionrules {

namespace {

constexpr int kMostPeople = 64;
constexpr int kMostMinutes = 24 * 60;
constexpr int kMostCameras = 8;

struct SimulateOptions {
  SimulationOptions simulation;
  std::string noise = "real";
  MeetingOptions meeting;
};

void runSimulate(SimulateOptions& options, PrbContext& context) {
  const std::optional<DetectorNoise> noise = noiseOf(options.noise);
  if (!noise) {
    throw UsageError("--noise must be none, low, real, high or a number from 0 to 1, not '" + options.noise +
                     "'");
  }
  options.simulation.noise = *noise;
  Simulation simulation(options.simulation);
  OutputFile output(options.meeting.output, context.out);
  RecordingWriter writer(output.stream());
  writeMeetingStart(writer, options.meeting, simulation.cameras());
  const std::int64_t count = simulation.resultCount();
  ProgressBar bar(context.err, context.errIsTerminal, "simulate", static_cast<std::uint64_t>(count));
  for (std::int64_t index = 0; index < count; ++index) {
    const VisionResult result = simulation.next();
    writer.write({result.t, visionMessage(result, simulation.cameras())});
    bar.update(static_cast<std::uint64_t>(index) + 1);
  }
  output.finish();
}

}  // namespace

void addSimulateCommand(CLI::App& command, PrbContext& context) {
  const auto options = std::make_shared<SimulateOptions>();
  SimulationOptions& simulation = options->simulation;
  command.add_option("--seed", simulation.seed, "Chooses the meeting; the same seed gives the same bytes")
      ->type_name("N")
      ->check([](const std::string& text) {
        return text.rfind('-', 0) == 0 ? "must be 0 or more, not " + text : std::string();
      })
      ->required();
  command.add_option("--people", simulation.people, "How many people come")
      ->type_name("N")
      ->check(CLI::Range(0, kMostPeople))
      ->capture_default_str();
  command.add_option("--minutes", simulation.minutes, "How long the meeting is")
      ->type_name("M")
      ->check(CLI::Range(1, kMostMinutes))
      ->capture_default_str();
  command.add_option("--cameras", simulation.cameras, "How many cameras see the same people")
      ->type_name("N")
      ->check(CLI::Range(1, kMostCameras))
      ->capture_default_str();
  command
      .add_option(
          "--noise", options->noise,
          "Errors of the detector: none, low, real (as measured on real detectors), high, or a number "
          "from 0 (none) to 1 (high)")
      ->type_name("LEVEL")
      ->capture_default_str();
  addMeetingOptions(command, options->meeting);
  command.footer(
      "Examples:\n"
      "  prb simulate --seed 7 --people 6 --minutes 5 -o meeting.jsonl\n"
      "  prb simulate --seed 7 --noise none | prb replay - -o scenes.jsonl");
  command.callback([options, &context] { runSimulate(*options, context); });
}

}  // namespace fyn::productionrules
