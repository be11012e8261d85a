// prb-camera: a camera provider that composes the pictures which the service decides on.
#include <CLI/CLI.hpp>
#include <chrono>
#include <cmath>
#include <iostream>

#include "platform/ServiceState.h"
#include "platform/VisionSettings.h"
#include "tools/base/OutputFile.h"
#include "tools/base/ProgramRun.h"
#include "tools/base/StopSignals.h"
#include "tools/video/camera/BusArrivals.h"
#include "tools/video/camera/CameraArguments.h"
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

std::unique_ptr<SceneService> serve(const CameraArguments& arguments, Inbox& inbox) {
  return std::make_unique<SceneService>(arguments.dbus, [&inbox](const std::string& document) {
    inbox.put({Arrival::Kind::sceneFromService, document});
  });
}

void sayReady(const Player& player) {
  std::cout << "ready, zoom " << player.zoomLimit() << std::endl;
}

/** Shows each frame that a vision feed on the bus reports, until it is told to end. */
void follow(const CameraArguments& arguments, Player& player, StopSignals& stop) {
  Inbox inbox;
  const BusArrivals bus(arguments.platform, inbox, stop);
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
  std::optional<BusArrivals> bus;
  if (arguments.hasBus()) {
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
  } else if (arguments.feed.empty() && arguments.hasBus()) {
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

}  // namespace

}  // namespace fyn::productionrules::video

// Without memory for the options there is nothing left to end well.
// NOLINTNEXTLINE(bugprone-exception-escape)
int main(int argc, char** argv) {
  namespace video = fyn::productionrules::video;
  CLI::App app("Composes the output picture from real video, as the production-rules service decides.");
  video::CameraArguments arguments;
  video::silenceVideoLibraries();
  app.set_version_flag("--version", "prb-camera " PR_VERSION);
  video::addCameraOptions(app, arguments);
  return fyn::productionrules::runProgram("prb-camera", app, argc, argv, [&arguments] {
    if (arguments.player.outputs.empty()) {
      arguments.player.outputs.emplace_back("none");
    }
    video::runCamera(arguments);
  });
}
