#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/linux/PlatformOptions.h"
#include "tools/base/OutputRules.h"
#include "tools/video/camera/Player.h"

namespace CLI {
class App;
}

namespace fyn::productionrules::video {

/** What prb-camera is told; its options say what each means. */
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

  /** Whether a bus of other programs is named. */
  bool hasBus() const { return platform.bus != "embedded"; }
};

/** Gives the program the options that fill `arguments`, whose values are the defaults. */
void addCameraOptions(CLI::App& app, CameraArguments& arguments);

}  // namespace fyn::productionrules::video
