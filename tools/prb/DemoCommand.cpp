#include <CLI/CLI.hpp>
#include <array>
#include <filesystem>
#include <memory>
#include <sstream>

#include "tools/base/NamedStream.h"
#include "tools/prb/Commands.h"
#include "tools/prb/Prb.h"
#include "tools/replay/DemoObserver.h"
#include "tools/replay/ObserverList.h"
#include "tools/replay/RealTimePace.h"
#include "tools/replay/RecordingRun.h"
#include "tools/settings/KeyValueTexts.h"
#include "tools/view/LineLog.h"
#include "tools/view/ReplayLines.h"
#include "tools/view/ViewPage.h"

namespace fyn::productionrules {

namespace {

struct DemoArguments {
  std::string recording;
  bool once = false;
  bool fast = false;
  std::string mode = "group";
  std::string scenes = "out/scenes.jsonl";
  std::string config;
  std::string seed = "1";
  // Without a number: as many as the mode is made for.
  std::string people;
  std::string minutes = "3";
  // What a detector behind a tracker leaves; the noise of a bare one hides what the service does.
  std::string noise = "low";
  bool view = false;
  ViewPageOptions page;
};

struct Mode {
  const char* name;
  FramingMode mode;
  const char* people;
};

constexpr std::array<Mode, 4> kModes{{{"group", FramingMode::GroupFraming, "5"},
                                      {"people", FramingMode::PeopleFraming, "6"},
                                      {"speaker", FramingMode::SpeakerFraming, "5"},
                                      {"multistream", FramingMode::MultiStream, "5"}}};

std::vector<std::string> modeNames() {
  std::vector<std::string> names;
  names.reserve(kModes.size());
  for (const Mode& mode : kModes) {
    names.emplace_back(mode.name);
  }
  return names;
}

const Mode& findMode(const std::string& name) {
  for (const Mode& mode : kModes) {
    if (name == mode.name) {
      return mode;
    }
  }
  throw UsageError("unknown mode " + name);
}

/** Where the meeting of a round comes from: a file, or the simulator. */
class Meeting {
 public:
  Meeting(const DemoArguments& arguments, PrbContext& context) {
    if (!arguments.recording.empty()) {
      mFile = std::make_unique<InputFile>(arguments.recording, context.in);
      mName = mFile->name();
      return;
    }
    mName = "simulated meeting";
    PrbContext simulation{context.in, mSimulated, context.err};
    const std::string people = arguments.people.empty() ? findMode(arguments.mode).people : arguments.people;
    const int status = runPrb({"simulate", "--seed", arguments.seed, "--people", people, "--minutes",
                               arguments.minutes, "--noise", arguments.noise, "-o", "-"},
                              simulation);
    // What is wrong has been said already.
    mIsThere = status == 0;
    context.status = status;
  }

  std::istream& stream() { return mFile != nullptr ? mFile->stream() : mSimulated; }
  const std::string& name() const { return mName; }

  /** False when it could not be made; the reason has been said. */
  bool isThere() const { return mIsThere; }

 private:
  std::unique_ptr<InputFile> mFile;
  std::stringstream mSimulated;
  std::string mName;
  bool mIsThere = true;
};

/** The viewer page beside the demo: each round goes on where the one before has ended. */
class DemoPage {
 public:
  // The page is an addition: without a port the demo goes on.
  DemoPage(const DemoArguments& arguments, PrbContext& context) {
    if (!arguments.view) {
      return;
    }
    const std::string what = arguments.recording.empty() ? "simulated meeting" : arguments.recording;
    try {
      mPage = showViewPage(mLog, what + ", " + arguments.mode + " framing", arguments.page);
      context.out << "The viewer page is at " << mPage.address << std::endl;
    } catch (const UsageError&) {
      throw;
    } catch (const std::runtime_error& error) {
      context.err << "prb demo: no viewer page: " << error.what() << std::endl;
    }
  }

  /** Observes the next round, if there is a page. */
  void beginRound(ObserverList& observers) {
    if (mPage.server != nullptr) {
      mLines.emplace(mLog, mStart);
      observers.add(*mLines, mLines->decisions());
    }
  }

  /** Plays an event of the round. */
  void handle(Replay& replay, const RecordingEvent& event) {
    if (mLines) {
      mLines->watch(replay);
      mLines->handle(event);
    } else {
      replay.handle(event);
    }
  }

  /** Call it while the round's replay is still there. */
  void endRound() { mStart = mLines ? mLines->now() : 0; }

 private:
  LineLog mLog = LineLog::ofLive();
  ViewPage mPage;
  std::int64_t mStart = 0;
  std::optional<ReplayLines> mLines;
};

// Plays one round. False when somebody asked to end.
bool playRound(const DemoArguments& arguments, PrbContext& context, std::ostream& scenes, DemoPage& page) {
  Meeting meeting(arguments, context);
  if (!meeting.isThere()) {
    return false;
  }
  DemoObserver observer(context.out, scenes);
  ReplayOptions options;
  options.configuration = readConfiguration(arguments.config);
  const int mode = static_cast<int>(findMode(arguments.mode).mode);
  options.properties = {{"vendor.talkertracking.flag", std::to_string(mode)}};
  if (arguments.recording.empty()) {
    // The simulated detector reports each frame by itself.
    options.properties.emplace_back("vendor.feature.pfSteadyPresence", "1");
  }
  options.standardOutput = &context.err;
  ObserverList observers;
  observers.add(observer, observer);
  page.beginRound(observers);
  options.decisions = &observers;
  Replay replay(options, observers);
  observer.watch(replay);
  const RealTimePace pace(arguments.fast ? 0.0 : 1.0);
  RecordingReader reader(meeting.stream(), meeting.name());
  RecordingEvent event;
  bool goOn = true;
  while (goOn && reader.next(event)) {
    goOn = pace.waitUntil(event.t);
    if (goOn) {
      page.handle(replay, event);
    }
  }
  replay.finish();
  page.endRound();
  scenes.flush();
  context.out << observer.summary() << std::endl;
  return goOn;
}

void runDemo(const DemoArguments& arguments, PrbContext& context) {
  const std::filesystem::path path(arguments.scenes);
  if (path.has_parent_path()) {
    std::error_code ignored;
    std::filesystem::create_directories(path.parent_path(), ignored);
  }
  OutputFile scenes(arguments.scenes, context.out);
  context.out << "Playing " << (arguments.recording.empty() ? "a simulated meeting" : arguments.recording)
              << " in " << arguments.mode << " framing"
              << (arguments.fast ? ", as fast as it can" : ", in real time")
              << ". One line per change of the picture; scene documents go to " << arguments.scenes
              << (arguments.once ? "." : ". Ctrl-C ends it.") << std::endl;
  DemoPage page(arguments, context);
  while (playRound(arguments, context, scenes.stream(), page) && !arguments.once) {
  }
  scenes.finish();
}

}  // namespace

void addDemoCommand(CLI::App& command, PrbContext& context) {
  const auto arguments = std::make_shared<DemoArguments>();
  command.add_option("recording", arguments->recording, "Play this recording instead of a simulated meeting")
      ->type_name("RECORDING");
  command.add_flag("--once", arguments->once, "Play it once, then end");
  command.add_flag("--fast", arguments->fast, "As fast as it can instead of in real time");
  command.add_option("--mode", arguments->mode, "Framing: group, people, speaker or multistream")
      ->check(CLI::IsMember(modeNames()))
      ->capture_default_str();
  command.add_option("--scenes", arguments->scenes, "Where the scene documents go, one per line")
      ->type_name("FILE")
      ->capture_default_str();
  command.add_option("--config", arguments->config, "Configuration file that the service reads")
      ->type_name("FILE");
  command.add_option("--seed", arguments->seed, "Seed of the simulated meeting")->capture_default_str();
  command
      .add_option("--people", arguments->people,
                  "People in the simulated meeting; without it 6 in people framing, else 5")
      ->type_name("N");
  command.add_option("--minutes", arguments->minutes, "Length of the simulated meeting")
      ->capture_default_str();
  command.add_option("--noise", arguments->noise, "Noise of the simulated detector: none, low, real or high")
      ->type_name("LEVEL")
      ->capture_default_str();
  command.add_flag("--view", arguments->view, "Show it on the viewer page too, and print the page's address");
  addViewPageOptions(command, arguments->page);
  command.footer(
      "Plays a meeting through the service on the embedded bus and says what it decides and why. With a "
      "simulated\n"
      "meeting the property vendor.feature.pfSteadyPresence is on, as its detector reports each frame by "
      "itself.\n"
      "\n"
      "Examples:\n"
      "  prb demo --once --fast\n"
      "  prb demo --mode people --people 6 --view\n"
      "  prb demo meeting.jsonl --scenes scenes.jsonl");
  command.callback([arguments, &context] { runDemo(*arguments, context); });
}

}  // namespace fyn::productionrules
