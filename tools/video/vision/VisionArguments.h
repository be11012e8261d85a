#pragma once

#include <string>
#include <vector>

#include "platform/linux/PlatformOptions.h"
#include "tools/meeting/MeetingOptions.h"
#include "tools/video/vision/SpeakerFinder.h"

namespace CLI {
class App;
}

namespace fyn::productionrules::video {

/** What prb-vision is told; its options say what each means. */
struct VisionArguments {
  std::vector<std::string> inputs;
  std::string calibration;
  PlatformOptions platform;
  MeetingOptions recording;
  std::string detector;
  std::string models;
  std::string cascades = "/usr/share/opencv4/haarcascades";
  std::string model;
  std::string script;
  std::string feed;
  std::string sound;
  std::string withoutSound = "nobody";
  int every = 1;

  /** Who is taken to speak then. */
  WithoutSound speakerWithoutSound() const {
    return withoutSound == "mouths" ? WithoutSound::liveliestMouth : WithoutSound::nobody;
  }
};

/** Gives the program the options that fill `arguments`, whose values are the defaults. */
void addVisionOptions(CLI::App& app, VisionArguments& arguments);

}  // namespace fyn::productionrules::video
