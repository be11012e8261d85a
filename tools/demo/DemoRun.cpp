#include "tools/demo/DemoRun.h"

#include <filesystem>
#include <optional>
#include <sstream>

#include "tools/base/InputFile.h"
#include "tools/base/OutputFile.h"
#include "tools/base/RealTimePace.h"
#include "tools/base/StopSignals.h"
#include "tools/meeting/MeetingOptions.h"
#include "tools/recording/RecordingReader.h"
#include "tools/replay/DemoObserver.h"
#include "tools/replay/ObserverList.h"
#include "tools/settings/KeyValueTexts.h"
#include "tools/settings/PresetUse.h"
#include "tools/view/LineLog.h"
#include "tools/view/ReplayLines.h"

namespace fyn::productionrules {

namespace {

/** Without a number, as many people as the mode is made for. */
int usualPeople(const std::string& mode) {
  return framingModeNamed(mode) == FramingMode::PeopleFraming ? 6 : 5;
}

/** Where the meeting of a round comes from: a file, or the simulator. */
class Meeting {
 public:
  Meeting(const DemoOptions& options, PrbContext& context) {
    if (options.recording.empty()) {
      SimulationOptions meeting = options.meeting;
      meeting.people = options.people.value_or(usualPeople(options.mode));
      meeting.errors = noiseOption(options.noise);
      Simulation simulation(meeting);
      MeetingOptions plain;
      plain.withTruth = false;
      writeSimulatedMeeting(mSimulated, simulation, plain);
    } else {
      mFile.emplace(options.recording, context.in);
    }
  }

  RecordingReader reader() {
    return mFile ? RecordingReader(mFile->stream(), mFile->name())
                 : RecordingReader(mSimulated, "simulated meeting");
  }

 private:
  std::optional<InputFile> mFile;
  std::stringstream mSimulated;
};

/** The viewer page beside the demo: each round goes on where the one before has ended. */
class DemoPage {
 public:
  // The page is an addition: without a port the demo goes on.
  DemoPage(const DemoOptions& options, PrbContext& context) {
    if (!options.view) {
      return;
    }
    const std::string what = options.recording.empty() ? "simulated meeting" : options.recording;
    try {
      mPage = showViewPage(mLog, what + ", " + options.mode + " framing", options.page);
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

  /** The round's replay. */
  void watch(Replay& replay) {
    if (mLines) {
      mLines->watch(replay);
    }
  }

  /** Plays an event of the round. */
  void handle(Replay& replay, const RecordingEvent& event) {
    if (mLines) {
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

std::string configurationOf(const DemoOptions& options) {
  std::ostringstream faults;
  return readConfiguration(options.config, faults).value_or(presetNamed(options.preset));
}

ReplayOptions replayOptions(const DemoOptions& options, PrbContext& context) {
  ReplayOptions replay;
  replay.configuration = configurationOf(options);
  const int mode = static_cast<int>(framingModeNamed(options.mode));
  replay.properties = {{"vendor.talkertracking.flag", std::to_string(mode)}};
  replay.standardOutput = &context.err;
  return replay;
}

/** Plays one round. False when there is no use in another: somebody asked to end, or it took no time. */
bool playRound(const DemoOptions& options, PrbContext& context, Meeting& meeting, std::ostream& scenes,
               DemoPage& page, StopSignals& stop) {
  DemoObserver observer(context.out, scenes);
  ObserverList observers;
  observers.add(observer, observer);
  page.beginRound(observers);
  ReplayOptions replayed = replayOptions(options, context);
  replayed.decisions = &observers;
  Replay replay(replayed, observers);
  observer.watch(replay);
  page.watch(replay);
  const RealTimePace pace(stop, options.fast ? 0.0 : 1.0);
  RecordingReader reader = meeting.reader();
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
  return goOn && event.t > 0;
}

/** Whether rounds follow each other until somebody asks to end. What is piped in can be read only once. */
bool playsRounds(const DemoOptions& options) {
  return !options.once && (options.recording.empty() || std::filesystem::is_regular_file(options.recording));
}

}  // namespace

void runDemo(const DemoOptions& options, PrbContext& context) {
  // Before the threads of the page, and until all is written.
  StopSignals stop;
  // What cannot be opened is told before anything else.
  std::optional<Meeting> meeting(std::in_place, options, context);
  readConfiguration(options.config, context.err);
  const std::string misuse = presetMisuse(configurationOf(options), framingModeNamed(options.mode));
  if (!misuse.empty()) {
    context.err << "prb demo: the configuration " << misuse << std::endl;
  }
  const bool repeats = playsRounds(options);
  const std::filesystem::path path(options.scenes);
  if (path.has_parent_path()) {
    std::error_code ignored;
    std::filesystem::create_directories(path.parent_path(), ignored);
  }
  const OutputRules rules{options.rules.mayReplace || options.scenes == DemoOptions::kOwnScenes,
                          {options.recording, options.config}};
  OutputFile scenes(options.scenes, rules, context.out);
  scenes.putInPlace();
  context.out << "Playing " << (options.recording.empty() ? "a simulated meeting" : options.recording)
              << " in " << options.mode << " framing"
              << (options.fast ? ", as fast as it can" : ", in real time")
              << ". One line per change of the picture; scene documents go to " << options.scenes
              << (repeats ? ". Ctrl-C ends it." : ".") << std::endl;
  DemoPage page(options, context);
  while (playRound(options, context, *meeting, scenes.stream(), page, stop) && repeats) {
    meeting.emplace(options, context);
  }
  scenes.finish();
}

}  // namespace fyn::productionrules
