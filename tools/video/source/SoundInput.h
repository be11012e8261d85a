#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tools/video/source/CameraInputs.h"
#include "tools/video/source/PipedProcess.h"
#include "tools/video/source/SpeechDetector.h"

namespace CLI {
class App;
}

namespace fyn::productionrules::video {

/** Gives a program the option of what SoundInput takes as its source. */
void addSoundOption(CLI::App& app, std::string& source);

/** Whether somebody speaks, by the sound of a file or of a microphone. */
class SoundInput {
 public:
  /**
   * `source`: a file, "microphone" (the desktop's), "alsa:DEVICE" or "none"; empty for the sound of the first
   * input, of which a device has none. Raises UsageError when the file cannot be read or ffmpeg not be
   * started.
   */
  SoundInput(const std::string& source, const std::vector<CameraInput>& inputs);

  /** Whether speech is heard `ms` after the start of a file; of a microphone, now. Nothing without sound,
   * which includes that it has ended. */
  std::optional<bool> speechAt(std::int64_t ms);

 private:
  void readBlock();

  bool mLive = false;
  std::optional<PipedProcess> mProcess;
  SpeechDetector mDetector;
  std::array<std::int16_t, SpeechDetector::kBlock> mBlock{};
  std::size_t mFilled = 0;
  std::int64_t mHeardMs = 0;
};

}  // namespace fyn::productionrules::video
