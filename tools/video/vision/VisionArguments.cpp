#include "tools/video/vision/VisionArguments.h"

#include <CLI/CLI.hpp>

#include "tools/live/LiveBus.h"
#include "tools/video/source/SoundInput.h"

namespace fyn::productionrules::video {

void addVisionOptions(CLI::App& app, VisionArguments& arguments) {
  app.add_option("inputs", arguments.inputs,
                 "Video file, device such as /dev/video0, or image sequence such as room-%04d.png; one per "
                 "camera, camera 0 first")
      ->type_name("INPUT");
  app.add_option("--cameras", arguments.calibration,
                 "Calibration file that names the inputs instead, for cameras that see the same persons")
      ->type_name("FILE");
  app.add_option("--feed", arguments.feed,
                 "Look at the frames that prb-camera hands over on this socket instead")
      ->type_name("SOCKET");
  addBusOptions(app, arguments.platform);
  addMeetingOptions(app, arguments.recording);
  app.add_option("--detector", arguments.detector,
                 "rooms: whose face is seen, by a small network, the default where its file is there; "
                 "bodies: who stands or walks with the whole body in view, also far away or from behind; "
                 "faces: as rooms, without the network, and worse")
      ->check(CLI::IsMember({"rooms", "bodies", "faces"}));
  app.add_option("--models", arguments.models, "Folder of faces.onnx, for rooms")
      ->type_name("FOLDER")
      ->capture_default_str();
  addSoundOption(app, arguments.sound);
  app.add_option("--without-sound", arguments.withoutSound,
                 "Who is taken to speak where there is no sound: nobody, or mouths: whose mouth moves most")
      ->check(CLI::IsMember({"nobody", "mouths"}).description(""))
      ->type_name("WHO")
      ->capture_default_str();
  app.add_option("--cascades", arguments.cascades, "Folder of OpenCV's cascades, for faces")
      ->type_name("FOLDER")
      ->capture_default_str();
  app.add_option("--model", arguments.model, "Description of a neural network to use instead, JSON")
      ->type_name("FILE");
  app.add_option("--script", arguments.script, "See what this script says instead, JSON Lines")
      ->type_name("FILE");
  app.add_option("--detect-every", arguments.every,
                 "Look at every Nth frame only; in between persons move on as they did")
      ->type_name("N")
      ->check(CLI::Range(1, 1000))
      ->capture_default_str();
  app.footer(
      "With --bus it publishes each frame's result at its time and looks at a new frame whenever it is done "
      "with the one\nbefore. Without, it writes a recording (-o) as fast as it can, looks at every frame, "
      "and writes the same every time.\n\nExamples:\n"
      "  prb-vision --feed room.sock --bus mqtt://127.0.0.1:1883\n"
      "  prb-vision room.mp4 --detect-every 3 -o room.jsonl\n"
      "  prb-vision --cameras side-by-side.json -o room.jsonl");
}

}  // namespace fyn::productionrules::video
