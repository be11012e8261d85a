#include <CLI/CLI.hpp>
#include <algorithm>
#include <chrono>
#include <deque>
#include <memory>

#include "platform/ServiceStateScope.h"
#include "tools/base/InputFile.h"
#include "tools/base/ShellWord.h"
#include "tools/base/StopSignals.h"
#include "tools/base/StoppableInput.h"
#include "tools/base/UsageError.h"
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
  /** The recording whose own pictures stand beside those of the first. */
  std::string beside;
  bool recorded = false;
  std::string at;
  /** Two of them are shown side by side. */
  std::vector<std::string> configs;
  std::vector<std::string> properties;
  PlatformOptions platform;
  ViewPageOptions page;
};

/** One recording in one way. */
struct Side {
  std::string name;
  std::string recording;
  std::string config;
  /** What it holds is shown, else what a replay makes of it. */
  bool isRecorded = false;
};

std::vector<Side> sidesOf(const ViewArguments& arguments) {
  const std::string config = arguments.configs.empty() ? "" : arguments.configs.front();
  if (!arguments.beside.empty()) {
    return {{arguments.recording, arguments.recording, "", true},
            {arguments.beside, arguments.beside, "", true}};
  }
  if (arguments.recorded) {
    return {{"recorded", arguments.recording, "", true}, {"replayed", arguments.recording, config, false}};
  }
  std::vector<Side> sides;
  for (const std::string& each : arguments.configs) {
    sides.push_back({each, arguments.recording, each, false});
  }
  if (sides.empty()) {
    sides.push_back({"", arguments.recording, "", false});
  }
  return sides;
}

void tellAddress(const ViewPage& page, PrbContext& context) {
  context.out << page.address << std::endl;
  context.err << "open this address in a browser; end with Ctrl-C" << std::endl;
}

void waitForTheEnd(StopSignals& stop) {
  while (!stop.waitFor(std::chrono::hours(1))) {
  }
}

/** How to ask about a moment of a replay, of a file that can be replayed again. */
std::string questionAbout(const Side& side, const std::vector<std::string>& properties) {
  if (side.recording == "-" || side.isRecorded) {
    return {};
  }
  return "prb why " + shellWord(side.recording) + settingsWords({side.config}, properties);
}

/** What a side shows, from its file into its lines. */
class SidePlay {
 public:
  SidePlay(const Side& side, const ViewArguments& arguments, std::istream& standardInput, PrbContext& context)
      : mInput(side.recording, standardInput), mIsRecorded(side.isRecorded), mContext(context) {
    mOptions.configuration = readConfiguration(side.config, context.err);
    mOptions.properties = keyValues(arguments.properties);
  }

  std::string name() const { return mInput.name(); }
  LineLog& lines() { return mLines; }

  bool run(StopSignals& stop) {
    const auto isStopped = [&stop] { return stop.waitFor(std::chrono::seconds(0)); };
    return mIsRecorded ? showRecorded(mInput, mLines, mContext, isStopped)
                       : playRecording(mInput, mOptions, mLines, mContext, isStopped);
  }

 private:
  InputFile mInput;
  const bool mIsRecorded;
  PrbContext& mContext;
  ReplayOptions mOptions;
  LineLog mLines = LineLog::ofRecording();
};

void viewRecording(const ViewArguments& arguments, PrbContext& context) {
  const std::vector<Side> sides = sidesOf(arguments);
  if (sides.size() > 1 && (arguments.recording == "-" || arguments.beside == "-")) {
    throw UsageError(
        "two sides are read one after the other, so none can come from standard input; name files");
  }
  StopSignals stop;
  StoppableInput standardInput(context.in, stop);
  std::deque<SidePlay> plays;
  for (const Side& side : sides) {
    plays.emplace_back(side, arguments, standardInput.stream(), context);
  }
  ViewPageOptions pageOptions = arguments.page;
  pageOptions.question = questionAbout(sides.front(), arguments.properties);
  if (sides.size() > 1) {
    pageOptions.sides = SideBySide{{{{sides[0].name, pageOptions.question},
                                     {sides[1].name, questionAbout(sides[1], arguments.properties)}}},
                                   &plays.back().lines()};
  }
  const std::string moment = arguments.at.empty() ? "" : "#t=" + std::to_string(momentOf(arguments.at));
  ViewPage page = showViewPage(plays.front().lines(), plays.front().name(), pageOptions);
  page.address += moment;
  tellAddress(page, context);
  if (std::all_of(plays.begin(), plays.end(), [&stop](SidePlay& play) { return play.run(stop); })) {
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
  bus.waitUntilReady(stop);
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
  CLI::Option* const config =
      command
          .add_option(
              "--config", arguments->configs,
              "Configuration file instead of the recording's; given twice, both are shown side by side")
          ->type_name("FILE")
          ->expected(1)
          ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll)
          ->needs(recording);
  CLI::Option* const recorded =
      command
          .add_flag(
              "--recorded", arguments->recorded,
              "Show the pictures that the recording holds (prb record --outputs) beside those of its replay")
          ->needs(recording);
  CLI::Option* const beside =
      command
          .add_option("--beside", arguments->beside,
                      "Show the pictures that both recordings hold side by side, without a replay")
          ->type_name("RECORDING")
          ->needs(recording);
  addPropertyOption(command, arguments->properties);
  command.get_option("--property")->needs(recording);
  beside->excludes(config, recorded, command.get_option("--property"));
  command
      .add_option("--video", arguments->page.videos,
                  "The video that prb-vision and prb-camera are given, shown under the boxes; of several "
                  "cameras one each, from camera 0")
      ->type_name("FILE")
      ->expected(1)
      ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll)
      ->excludes(beside);
  addViewPageOptions(command, arguments->page);
  addBusOptions(command, arguments->platform);
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
      "  prb view meeting.jsonl --config a.conf --config b.conf     (keys d and shift d: differences)\n"
      "  prb view room.jsonl --video room.mp4     (after prb-vision room.mp4 -o room.jsonl)\n"
      "  prb view --bus mqtt://localhost");
  command.callback([arguments, &context] {
    const std::size_t most = arguments->recorded ? 1 : 2;
    if (arguments->configs.size() > most) {
      throw UsageError(std::to_string(arguments->configs.size()) + " configurations are given; " +
                       (arguments->recorded ? "with --recorded one" : "two at the most") + " can be shown");
    }
    if (arguments->recording.empty()) {
      viewBus(*arguments, context);
    } else {
      viewRecording(*arguments, context);
    }
  });
}

}  // namespace fyn::productionrules
