// prb-camera: a camera provider that composes the pictures which the service decides on.
#include <CLI/CLI.hpp>
#include <chrono>
#include <cmath>
#include <iostream>

#include "platform/ServiceState.h"
#include "platform/Topics.h"
#include "platform/VisionSettings.h"
#include "tools/base/OutputFile.h"
#include "tools/base/ProgramRun.h"
#include "tools/base/StopSignals.h"
#include "tools/live/LiveBus.h"
#include "tools/video/camera/FollowedFrames.h"
#include "tools/video/camera/Inbox.h"
#include "tools/video/camera/LiveShow.h"
#include "tools/video/camera/OfflineRun.h"
#include "tools/video/camera/Player.h"
#include "tools/video/camera/SceneService.h"
#include "tools/video/source/FrameFeed.h"
#include "tools/video/source/SoundInput.h"
#include "tools/video/source/VideoInput.h"

namespace fyn::productionrules::video {

namespace {

/** How long a wish to end may take to be seen. */
constexpr std::chrono::milliseconds kSlice{20};
constexpr std::chrono::milliseconds kAtOnce{0};
/** How long what waits is still shown then. */
constexpr std::chrono::milliseconds kAfterwards{500};
/** The bus of the options when none is named. */
constexpr const char* kNoBus = "embedded";

struct CameraArguments {
  std::vector<std::string> inputs;
  std::string calibration;
  PlatformOptions platform;
  std::string dbus = "session";
  std::int64_t delay = 100;
  std::string scenes;
  std::string vision;
  bool fast = false;
  bool measure = false;
  std::string journal;
  std::string feed;
  std::string sound;
  std::string status;
  std::string size = "1280x720";
  OutputRules rules;
  PlayerOptions player;
};

/** Puts what comes on the bus into the inbox. */
class BusListener final : public com::quil::pubsub::IPubSubListener {
 public:
  explicit BusListener(Inbox& inbox) : mInbox(inbox) {}

  void onMessage(const std::string& topic, const std::string& message) override {
    const auto kind = topic == topics::kVisionResult ? Arrival::Kind::visionResult
                      : topic == topics::kScene      ? Arrival::Kind::sceneFromBus
                                                     : Arrival::Kind::nothing;
    if (kind != Arrival::Kind::nothing) {
      mInbox.put({kind, message});
    }
  }

 private:
  Inbox& mInbox;
};

std::unique_ptr<SceneService> serve(const CameraArguments& arguments, Inbox& inbox) {
  return std::make_unique<SceneService>(arguments.dbus, [&inbox](const std::string& document) {
    inbox.put({Arrival::Kind::sceneFromService, document});
  });
}

void sayReady(const Player& player) {
  std::cout << "ready, zoom " << player.zoomLimit() << std::endl;
}

/** What the programs on the bus say, as long as it lives. */
class BusEnd {
 public:
  BusEnd(const PlatformOptions& platform, Inbox& inbox, StopSignals& stop)
      : mListener(inbox), mBus(platform) {
    mBus.client().subscribe(std::string(topics::kVisionResult), mListener);
    mBus.client().subscribe(std::string(topics::kScene), mListener);
    mBus.waitUntilReady(stop);
  }

 private:
  BusListener mListener;
  LiveBus mBus;
};

/** Shows each frame that a vision feed on the bus reports, until it is told to end. */
void follow(const CameraArguments& arguments, Player& player, StopSignals& stop) {
  Inbox inbox;
  const BusEnd bus(arguments.platform, inbox, stop);
  const std::unique_ptr<SceneService> service = serve(arguments, inbox);
  sayReady(player);
  FollowedFrames frames(player, arguments.delay);
  while (!stop.waitFor(std::chrono::nanoseconds(0))) {
    // All that has come, so that what is shown is not older than it must be.
    if (const std::optional<Arrival> arrival = inbox.take(frames.isDue() ? kAtOnce : kSlice)) {
      frames.handle(*arrival);
    } else {
      frames.showDue();
    }
  }
  const auto end = std::chrono::steady_clock::now() + kAfterwards;
  while (std::chrono::steady_clock::now() < end) {
    const std::optional<Arrival> arrival = inbox.take(kSlice);
    if (!arrival) {
      break;
    }
    frames.handle(*arrival);
  }
  frames.finish(end);
}

/** Shows the inputs at their own pace, until they end or it is told to. */
void playAlone(const CameraArguments& arguments, const std::vector<CameraInput>& cameras, Player& player,
               StopSignals& stop) {
  Inbox inbox;
  std::optional<BusEnd> bus;
  if (arguments.platform.bus != kNoBus) {
    bus.emplace(arguments.platform, inbox, stop);
  }
  std::optional<FrameFeed> feed;
  std::optional<SoundInput> sound;
  if (!arguments.feed.empty()) {
    feed.emplace(arguments.feed, cameras);
    sound.emplace(arguments.sound, cameras);
  }
  const std::unique_ptr<SceneService> service = serve(arguments, inbox);
  sayReady(player);
  LiveShow show(player, feed ? arguments.delay : 0);
  const auto start = std::chrono::steady_clock::now();
  const double frameMs = 1000.0 / player.rate();
  const double interval = arguments.fast || player.isLive() ? 0.0 : frameMs;
  bool isWished = false;
  for (std::int64_t number = 1;; ++number) {
    const auto due =
        start + std::chrono::duration_cast<std::chrono::nanoseconds>(
                    std::chrono::duration<double, std::milli>(interval * static_cast<double>(number - 1)));
    isWished = stop.waitFor(due - std::chrono::steady_clock::now());
    if (isWished || !player.read(number)) {
      break;
    }
    const FrameTime taken{number, ServiceState::current().clock().wallMs()};
    if (feed) {
      const auto fromStart = std::llround(frameMs * static_cast<double>(number - 1));
      feed->offer({taken.number, taken.timestampMs, player.pictures(), sound->speechAt(fromStart)});
    }
    while (const std::optional<Arrival> arrival = inbox.take(kAtOnce)) {
      show.handle(*arrival);
    }
    show.take(taken);
  }
  show.finish(isWished ? std::chrono::steady_clock::now() + kAfterwards
                       : std::chrono::steady_clock::time_point::max());
}

/** The pictures of a stopped film are worth something, so films are written in place. */
void checkFiles(CameraArguments& arguments) {
  arguments.rules.inputs = arguments.inputs;
  arguments.rules.inputs.insert(arguments.rules.inputs.end(),
                                {arguments.calibration, arguments.scenes, arguments.vision});
  arguments.rules.check(arguments.player.film);
  for (const std::string& target : arguments.player.outputs) {
    arguments.rules.check(target);
  }
}

void runCamera(CameraArguments& arguments) {
  checkFiles(arguments);
  // Before the video library starts threads, which would take the signals.
  StopSignals stop;
  std::unique_ptr<OutputFile> journal;
  if (!arguments.journal.empty()) {
    journal = std::make_unique<OutputFile>(arguments.journal, arguments.rules, std::cout);
    arguments.player.journal = &journal->stream();
  }
  arguments.player.complain = [](const std::string& fault) { PRB_LOGW(kCameraTag, "%s", fault.c_str()); };
  std::optional<StatusLine> status;
  if (!arguments.status.empty()) {
    arguments.player.status = &status.emplace(arguments.status);
  }
  arguments.player.size = outputSizeOf(arguments.size);
  const std::vector<CameraInput> cameras = cameraInputs(arguments.inputs, arguments.calibration);
  Player player(cameras, arguments.player, ServiceState::current().clock());
  const auto start = std::chrono::steady_clock::now();
  if (!arguments.scenes.empty()) {
    playOffline(arguments.scenes, arguments.vision, player, stop);
  } else if (arguments.feed.empty() && arguments.platform.bus != kNoBus) {
    follow(arguments, player, stop);
  } else {
    playAlone(arguments, cameras, player, stop);
  }
  player.finish();
  if (arguments.measure) {
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
    std::cout << player.shown() << " pictures in " << took.count() << " s, "
              << static_cast<double>(player.shown()) / took.count() << " per second\n";
    player.printTimes(std::cout);
  }
  if (journal) {
    journal->finish();
  }
}

void declareOptions(CLI::App& app, CameraArguments& arguments) {
  app.set_version_flag("--version", "prb-camera " PR_VERSION);
  app.add_option("inputs", arguments.inputs,
                 "Video file, device such as /dev/video0, or image sequence such as room-%04d.png; one per "
                 "camera, camera 0 first")
      ->type_name("INPUT");
  app.add_option("--cameras", arguments.calibration, "Calibration file that names the inputs instead")
      ->type_name("FILE");
  app.add_option("-o,--output", arguments.player.outputs,
                 "Where the pictures go: a .mp4, .webm or .mkv (lossless) file, a V4L2 loopback device, "
                 "pipewire (a camera that browsers can choose), window or none. The first is for stream 0, "
                 "the next for stream 1 ...; further streams go to files named after the last")
      ->type_name("TARGET")
      ->allow_extra_args(false);
  app.add_option(
         "--film", arguments.player.film,
         "Side-by-side film: the cameras with all heads and views at the left, the output at the right")
      ->type_name("FILE");
  app.add_option("--dbus", arguments.dbus, "D-Bus to serve on: session, system or an address")
      ->capture_default_str();
  addBusOptions(app, arguments.platform);
  app.add_option("--feed", arguments.feed,
                 "Own the inputs, whatever becomes of the other programs, and hand their frames to "
                 "prb-vision on this socket")
      ->type_name("SOCKET");
  app.add_option("--size", arguments.size, "Of the pictures that go out, a multiple of 32x18")
      ->type_name("WIDTHxHEIGHT")
      ->capture_default_str();
  app.add_option("--rate", arguments.player.device.rate, "Pictures per second that a device is asked for")
      ->type_name("NUMBER")
      ->check(CLI::Range(1, 120))
      ->capture_default_str();
  app.add_option("--enlarge", arguments.player.mostEnlarged,
                 "How many pixels in a row one of a camera may fill; a view that is too small is widened")
      ->type_name("NUMBER")
      ->check(CLI::Range(1.0, 100.0))
      ->capture_default_str();
  addSoundOption(app, arguments.sound);
  app.add_option("--delay", arguments.delay,
                 "With --feed, or behind a vision feed on the bus: how long a frame waits for its scene")
      ->type_name("MS")
      ->check(CLI::Range(std::int64_t{0}, std::int64_t{2000}))
      ->capture_default_str();
  app.add_option("--scenes", arguments.scenes,
                 "Offline: show what prb replay wrote, as fast as possible and the same every time")
      ->type_name("EFFECTS");
  app.add_option("--vision", arguments.vision,
                 "Offline: the recording that was replayed, for the film's heads")
      ->type_name("RECORDING");
  app.add_flag("--fast", arguments.fast, "Alone: do not wait for the time of a picture");
  app.add_option("--journal", arguments.journal, "One JSON line per picture: its frame, its scene, its times")
      ->type_name("FILE");
  app.add_option("--status", arguments.status,
                 "A line a second: people, mode, picture, and how old the picture is")
      ->type_name("FILE");
  addForceOption(app, arguments.rules);
  app.add_flag("--measure", arguments.measure,
               "Print at the end how many pictures there were and where the time went");
  app.footer(
      "With --bus alone it shows the frames that a vision feed reports, from its own copy of the videos, so "
      "that a cut lands on\nthe frame that caused it; else it shows its inputs at their own pace. Says "
      "\"ready\" when it can take scenes, and what its pixels bear as persist.tvpr.zoomInLimit.\nUntil the "
      "first scene it shows the whole picture of camera 0. SIGINT and SIGTERM end it.\n\nExamples:\n"
      "  prb-camera /dev/video0 --feed room.sock -o /dev/video10      a camera for a conference program\n"
      "  prb-camera room.mp4 --bus mqtt://127.0.0.1:1883 -o out.mp4   beside prb-vision on the same file\n"
      "  prb-camera room.mp4 --scenes effects.jsonl -o out.webm       offline");
}

}  // namespace

}  // namespace fyn::productionrules::video

// Without memory for the options there is nothing left to end well.
// NOLINTNEXTLINE(bugprone-exception-escape)
int main(int argc, char** argv) {
  namespace video = fyn::productionrules::video;
  CLI::App app("Composes the output picture from real video, as the production-rules service decides.");
  video::CameraArguments arguments;
  video::silenceVideoLibraries();
  video::declareOptions(app, arguments);
  return fyn::productionrules::runProgram("prb-camera", app, argc, argv, [&arguments] {
    if (arguments.player.outputs.empty()) {
      arguments.player.outputs.emplace_back("none");
    }
    video::runCamera(arguments);
  });
}
