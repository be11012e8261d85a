#include "tools/video/camera/CameraArguments.h"

#include <CLI/CLI.hpp>

#include "tools/live/LiveBus.h"
#include "tools/video/source/SoundInput.h"

namespace fyn::productionrules::video {

void addCameraOptions(CLI::App& app, CameraArguments& arguments) {
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

}  // namespace fyn::productionrules::video
