#include <CLI/CLI.hpp>
#include <memory>

#include "tools/demo/DemoRun.h"
#include "tools/meeting/MeetingOptions.h"
#include "tools/prb/Commands.h"
#include "tools/settings/PresetUse.h"

namespace fyn::productionrules {

void addDemoCommand(CLI::App& command, PrbContext& context) {
  const auto arguments = std::make_shared<DemoOptions>();
  command.add_option("recording", arguments->recording, "Play this recording instead of a simulated meeting")
      ->type_name("RECORDING");
  command.add_flag("--once", arguments->once, "Play it once, then end");
  command.add_flag("--fast", arguments->fast, "As fast as it can instead of in real time");
  command.add_option("--mode", arguments->mode, "Framing: group, people, speaker or multistream")
      ->check(CLI::IsMember(framingModeNames()))
      ->capture_default_str();
  command.add_option("--scenes", arguments->scenes, "Where the scene documents go, one per line")
      ->type_name("FILE")
      ->capture_default_str();
  addForceOption(command, arguments->rules);
  CLI::Option* const config =
      command.add_option("--config", arguments->config, "Configuration file that the service reads")
          ->type_name("FILE");
  command
      .add_option("--preset", arguments->preset,
                  "Preset that it reads when no file is named; 'prb config list' lists them")
      ->type_name("NAME")
      ->excludes(config)
      ->capture_default_str();
  addSeedOption(command, arguments->meeting.seed, "Seed of the simulated meeting")->capture_default_str();
  command
      .add_option("--people", arguments->people,
                  "People in the simulated meeting; without it 6 in people framing, else 5")
      ->type_name("N")
      ->check(CLI::Range(0, SimulationOptions::kMostPeople));
  command.add_option("--minutes", arguments->meeting.minutes, "Length of the simulated meeting")
      ->type_name("M")
      ->check(CLI::Range(1, SimulationOptions::kMostMinutes))
      ->capture_default_str();
  command.add_option("--noise", arguments->noise, "Noise of the simulated detector: none, low, real or high")
      ->type_name("LEVEL")
      ->capture_default_str();
  command.add_flag("--view", arguments->view, "Show it on the viewer page too, and print the page's address");
  addViewPageOptions(command, arguments->page);
  command.footer(
      "Plays a meeting through the service on the embedded bus and says what it decides and why.\n"
      "\n"
      "Examples:\n"
      "  prb demo --once --fast\n"
      "  prb demo --mode people --people 6 --view\n"
      "  prb demo --preset walking\n"
      "  prb demo meeting.jsonl --scenes scenes.jsonl");
  command.callback([arguments, &context] { runDemo(*arguments, context); });
}

}  // namespace fyn::productionrules
