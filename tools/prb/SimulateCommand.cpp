#include <CLI/CLI.hpp>

#include "tools/base/NamedStream.h"
#include "tools/base/ProgressBar.h"
#include "tools/meeting/MeetingOptions.h"
#include "tools/prb/Commands.h"

namespace fyn::productionrules {

namespace {

struct SimulateOptions {
  SimulationOptions simulation;
  std::string noise = "real";
  MeetingOptions meeting;
};

void runSimulate(SimulateOptions& options, PrbContext& context) {
  options.simulation.noise = noiseOption(options.noise);
  Simulation simulation(options.simulation);
  OutputFile output(options.meeting.output, context.out);
  ProgressBar bar(context.err, context.errIsTerminal, "simulate",
                  static_cast<std::uint64_t>(simulation.resultCount()));
  writeSimulatedMeeting(output.stream(), simulation, options.meeting,
                        [&bar](std::int64_t done) { bar.update(static_cast<std::uint64_t>(done)); });
  output.finish();
}

}  // namespace

void addSimulateCommand(CLI::App& command, PrbContext& context) {
  const auto options = std::make_shared<SimulateOptions>();
  SimulationOptions& simulation = options->simulation;
  addSeedOption(command, simulation.seed, "Chooses the meeting; the same seed gives the same bytes")
      ->required();
  command.add_option("--people", simulation.people, "How many people come")
      ->type_name("N")
      ->check(CLI::Range(0, SimulationOptions::kMostPeople))
      ->capture_default_str();
  command.add_option("--minutes", simulation.minutes, "How long the meeting is")
      ->type_name("M")
      ->check(CLI::Range(1, SimulationOptions::kMostMinutes))
      ->capture_default_str();
  command.add_option("--cameras", simulation.cameras, "How many cameras see the same people")
      ->type_name("N")
      ->check(CLI::Range(1, SimulationOptions::kMostCameras))
      ->capture_default_str();
  command
      .add_option(
          "--noise", options->noise,
          "Errors of the detector: none, low, real (as measured on real detectors), high, or a number "
          "from 0 (none) to 1 (high)")
      ->type_name("LEVEL")
      ->capture_default_str();
  addTruthOption(command, options->meeting);
  addMeetingOptions(command, options->meeting);
  command.footer(
      "Examples:\n"
      "  prb simulate --seed 7 --people 6 --minutes 5 -o meeting.jsonl\n"
      "  prb simulate --seed 7 --noise none | prb replay - -o scenes.jsonl");
  command.callback([options, &context] { runSimulate(*options, context); });
}

}  // namespace fyn::productionrules
