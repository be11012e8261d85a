#include <CLI/CLI.hpp>
#include <chrono>
#include <memory>

#include "platform/ServiceStateScope.h"
#include "tools/base/InputFile.h"
#include "tools/base/ShellWord.h"
#include "tools/base/StopSignals.h"
#include "tools/base/StoppableInput.h"
#include "tools/live/LiveBus.h"
#include "tools/prb/Commands.h"
#include "tools/settings/KeyValueTexts.h"
#include "tools/view/LineLog.h"
#include "tools/view/LiveRoom.h"
#include "tools/view/RecordingPlay.h"
#include "tools/view/ViewPage.h"
#include "tools/why/MomentTime.h"

namespace fyn::productionrules {

namespace {

struct ViewArguments {
  std::string recording;
  std::string at;
  std::string config;
  std::vector<std::string> properties;
  PlatformOptions platform;
  ViewPageOptions page;
};

void tellAddress(const ViewPage& page, PrbContext& context) {
  context.out << page.address << std::endl;
  context.err << "open this address in a browser; end with Ctrl-C" << std::endl;
}

void waitForTheEnd(StopSignals& stop) {
  while (!stop.waitFor(std::chrono::hours(1))) {
  }
}

/** How to ask about a moment of the recording, which must be a file to be replayed again. */
std::string questionAbout(const ViewArguments& arguments) {
  if (arguments.recording == "-") {
    return {};
  }
  std::string command = "prb why " + shellWord(arguments.recording);
  if (!arguments.config.empty()) {
    command += " --config " + shellWord(arguments.config);
  }
  for (const std::string& property : arguments.properties) {
    command += " --property " + shellWord(property);
  }
  return command;
}

void viewRecording(const ViewArguments& arguments, PrbContext& context) {
  StopSignals stop;
  StoppableInput standardInput(context.in, stop);
  InputFile input(arguments.recording, standardInput.stream());
  ReplayOptions options;
  options.configuration = readConfiguration(arguments.config, context.err);
  options.properties = keyValues(arguments.properties);
  LineLog lines = LineLog::ofRecording();
  ViewPageOptions pageOptions = arguments.page;
  pageOptions.question = questionAbout(arguments);
  const std::string moment = arguments.at.empty() ? "" : "#t=" + std::to_string(momentOf(arguments.at));
  ViewPage page = showViewPage(lines, input.name(), pageOptions);
  page.address += moment;
  tellAddress(page, context);
  if (playRecording(input, options, lines, context,
                    [&stop] { return stop.waitFor(std::chrono::seconds(0)); })) {
    waitForTheEnd(stop);
  }
}

/** Ends the deliveries before what they reach goes. */
class Deliveries {
 public:
  Deliveries(LiveBus& bus, LiveRoom& room) : mBus(bus) {
    for (const std::string_view topic : LiveRoom::kTopics) {
      bus.client().subscribe(std::string(topic), room);
    }
  }
  ~Deliveries() { mBus.client().close(); }
  Deliveries(const Deliveries&) = delete;
  Deliveries& operator=(const Deliveries&) = delete;

 private:
  LiveBus& mBus;
};

void viewBus(const ViewArguments& arguments, PrbContext& context) {
  StopSignals stop;
  LineLog lines = LineLog::ofLive();
  const auto state = std::make_shared<ServiceState>();
  const ServiceStateScope scope(state);
  LiveBus bus(arguments.platform);
  const auto room = std::make_shared<LiveRoom>(lines, liveTimeMs);
  state->setLog(room, LogLevels::kWarningLevel);
  const Deliveries deliveries(bus, *room);
  bus.waitUntilReady();
  const ViewPage page = showViewPage(lines, arguments.platform.bus, arguments.page);
  tellAddress(page, context);
  waitForTheEnd(stop);
}

}  // namespace

void addViewCommand(CLI::App& command, PrbContext& context) {
  const auto arguments = std::make_shared<ViewArguments>();
  CLI::Option* const recording =
      command
          .add_option(
              "recording", arguments->recording,
              "Replay this recording and show it; '-' is standard input. Without one: what happens on --bus")
          ->type_name("RECORDING");
  command.add_option("--at", arguments->at, "Show this moment, as 02:05.133 or in seconds")
      ->type_name("TIME")
      ->needs(recording);
  command.add_option("--config", arguments->config, "Configuration file that the service reads")
      ->type_name("FILE")
      ->needs(recording);
  addPropertyOption(command, arguments->properties);
  command.get_option("--property")->needs(recording);
  addViewPageOptions(command, arguments->page);
  addPlatformOptions(command, arguments->platform, true);
  recording->excludes(command.get_option("--bus"));
  command.footer(
      "Serves a page that shows the room, the picture, the waits and why the picture changed, and prints its "
      "address.\n"
      "A recording is replayed as 'prb replay' does it. On a live bus, all is what the live service says; "
      "its\n"
      "reasons are there while its property vendor.fyndebug.decisions is 1, its waits while "
      "vendor.fyndebug.enabled is.\n"
      "\n"
      "Examples:\n"
      "  prb view meeting.jsonl --at 02:05\n"
      "  prb view meeting.jsonl --property vendor.talkertracking.flag=4 --port 8080\n"
      "  prb view --bus mqtt://localhost");
  command.callback([arguments, &context] {
    if (arguments->recording.empty()) {
      viewBus(*arguments, context);
    } else {
      viewRecording(*arguments, context);
    }
  });
}

}  // namespace fyn::productionrules
