#include <CLI/CLI.hpp>
#include <sstream>

#include "tools/base/InputFile.h"
#include "tools/base/OutputFile.h"
#include "tools/base/ProgressBar.h"
#include "tools/meeting/MeetingOptions.h"
#include "tools/prb/Commands.h"

namespace fyn::productionrules {

namespace {

constexpr int kMostMovements = 100;
constexpr int kMostOverlap = 50;

struct SimulateOptions {
  SimulationOptions simulation;
  std::string noise = "real";
  std::string errorPreset;
  /** Those that override the preset. */
  std::vector<std::pair<const ErrorKind*, double>> errors;
  std::string seats;
  std::string turns;
  std::int64_t from = 0;
  MeetingOptions meeting;
};

MeetingErrors chosenErrors(const SimulateOptions& options) {
  MeetingErrors errors =
      options.errorPreset.empty() ? noiseOption(options.noise) : *errorsOf(options.errorPreset);
  for (const auto& [kind, value] : options.errors) {
    errors.*kind->member = kind->inParts(value);
  }
  return errors;
}

/** Sets how people sit and what they do besides. */
void chooseSeats(SimulateOptions& options) {
  SimulationOptions& simulation = options.simulation;
  simulation.seating = findSeating(options.seats);
  if (simulation.seating == nullptr) {
    return;
  }
  const std::string people = std::to_string(simulation.people);
  if (simulation.people > Seating::kMostPeople) {
    throw UsageError("--seats has room for " + std::to_string(Seating::kMostPeople) + " people, not " +
                     people);
  }
  for (const MovementKind& kind : kMovementKinds) {
    const int count = simulation.movements.*kind.count;
    if (kind.isOfThePeople && count > simulation.people) {
      throw UsageError(std::string("--") + kind.option + " is at most the number of people, " + people +
                       ", not " + std::to_string(count));
    }
  }
}

void runSimulate(SimulateOptions& options, PrbContext& context) {
  options.meeting.rules.inputs = {options.turns};
  options.meeting.rules.check(options.meeting.output);
  options.simulation.errors = chosenErrors(options);
  chooseSeats(options);
  if (!options.turns.empty()) {
    InputFile turns(options.turns, context.in);
    options.simulation.turns = turnsFrom(readTurns(turns.stream(), turns.name()), options.from * 1000);
  }
  Simulation simulation(options.simulation);
  OutputFile output(options.meeting.output, options.meeting.rules, context.out);
  ProgressBar bar(context.err, context.errIsTerminal, "simulate",
                  static_cast<std::uint64_t>(simulation.resultCount()));
  writeSimulatedMeeting(output.stream(), simulation, options.meeting,
                        [&bar](std::int64_t done) { bar.update(static_cast<std::uint64_t>(done)); });
  output.finish();
}

void addSeatOptions(CLI::App& command, SimulateOptions& options) {
  constexpr const char* kGroup = "Fixed seats (without them people come, walk about and go as they like)";
  std::vector<std::string> names;
  std::string meanings = "How people sit, at most " + std::to_string(Seating::kMostPeople);
  for (const Seating& seating : kSeatings) {
    meanings += std::string(names.empty() ? ": " : "; ") + seating.name + ", " + seating.help;
    names.emplace_back(seating.name);
  }
  CLI::Option* const seats = command.add_option("--seats", options.seats, meanings)
                                 ->type_name("ROOM")
                                 ->check(CLI::IsMember(names))
                                 ->group(kGroup);
  for (const MovementKind& kind : kMovementKinds) {
    command.add_option(std::string("--") + kind.option, options.simulation.movements.*kind.count, kind.help)
        ->type_name("N")
        ->check(CLI::Range(0, kMostMovements))
        ->needs(seats)
        ->group(kGroup);
  }
}

void addSpeechOptions(CLI::App& command, SimulateOptions& options) {
  constexpr const char* kGroup = "Speech";
  CLI::Option* const turns =
      command
          .add_option("--turns", options.turns,
                      "What is said: rows start_ms,end_ms,speaker. The speakers are persons 1, 2, ... in the "
                      "order of their first turn; without it a conversation is made up")
          ->type_name("TURNS.csv")
          ->group(kGroup);
  command.add_option("--from", options.from, "The second of the turns at which the meeting begins")
      ->type_name("SECONDS")
      ->check(CLI::Range(std::int64_t{0}, kLongestRecordingMs / 1000))
      ->needs(turns)
      ->group(kGroup);
  command
      .add_option("--overlap", options.simulation.overlap,
                  "Per cent of the time of speech in which others speak too: 5 to 29 in recorded meetings, "
                  "mostly about 10; less than 1 without it")
      ->type_name("PERCENT")
      ->check(CLI::Range(0, kMostOverlap))
      ->excludes(turns)
      ->group(kGroup);
}

/** "meaning (none 0, low 5.3, real 26.5, hard 29)" */
std::string helpOf(const ErrorKind& kind) {
  std::ostringstream text;
  text << kind.help;
  for (std::size_t preset = 0; preset < kErrorPresets.size(); ++preset) {
    text << (preset == 0 ? " (" : ", ") << kErrorPresets[preset] << ' ' << kind.presets[preset];
  }
  text << ')';
  return text.str();
}

void addErrorOptions(CLI::App& command, SimulateOptions& options) {
  constexpr const char* kGroup = "Errors of the detector and of the tagger of speakers";
  CLI::Option* const noise = command
                                 .add_option("--noise", options.noise,
                                             "The detector alone: none, low, real, high (as hard below) or a "
                                             "number from 0 (none) to 1 (high); what lasts, lasts as at none")
                                 ->type_name("LEVEL")
                                 ->capture_default_str()
                                 ->group(kGroup);
  command
      .add_option("--errors", options.errorPreset,
                  "All kinds of errors at once: none, low, real (as measured on real ones) or hard (the "
                  "worst of that), as the options below say; each of them overrides its own")
      ->type_name("PRESET")
      ->check(CLI::IsMember(std::vector<std::string>(kErrorPresets.begin(), kErrorPresets.end())))
      ->excludes(noise)
      ->group(kGroup);
  for (const ErrorKind& kind : kErrorKinds) {
    command
        .add_option_function<double>(
            std::string("--") + kind.option,
            [&options, &kind](double value) { options.errors.emplace_back(&kind, value); }, helpOf(kind))
        ->type_name(kind.unit.name)
        ->check(CLI::Range(kind.least, kind.most))
        ->group(kGroup);
  }
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
  addSeatOptions(command, *options);
  addSpeechOptions(command, *options);
  addErrorOptions(command, *options);
  addTruthOption(command, options->meeting);
  addMeetingOptions(command, options->meeting);
  command.footer(
      "Examples:\n"
      "  prb simulate --seed 7 --people 6 --minutes 5 -o meeting.jsonl\n"
      "  prb simulate --seed 7 --noise none | prb replay - -o scenes.jsonl\n"
      "  prb simulate --seed 7 --seats table --turns turns.csv --come-late 1 --errors low -o meeting.jsonl\n"
      "  prb simulate --seed 7 --seats row --overlap 15 --errors none --missed 20 --tag-late 8 | prb report "
      "-");
  command.callback([options, &context] { runSimulate(*options, context); });
}

}  // namespace fyn::productionrules
