#include "tools/video/source/SoundInput.h"

#include <poll.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <cerrno>
#include <fstream>

#include "platform/VisionSettings.h"
#include "tools/base/UsageError.h"

namespace fyn::productionrules::video {

namespace {

constexpr const char* kMicrophone = "microphone";
constexpr const char* kAlsa = "alsa:";

bool isAlsa(const std::string& source) {
  return source.rfind(kAlsa, 0) == 0;
}

std::vector<std::string> commandFor(const std::string& source) {
  std::vector<std::string> command{"ffmpeg", "-nostdin", "-loglevel", "quiet"};
  if (source == kMicrophone) {
    command.insert(command.end(), {"-f", "pulse", "-i", "default"});
  } else if (isAlsa(source)) {
    command.insert(command.end(), {"-f", "alsa", "-i", source.substr(std::string(kAlsa).size())});
  } else {
    command.insert(command.end(), {"-i", source});
  }
  command.insert(command.end(), {"-map", "0:a:0", "-ac", "1", "-ar", std::to_string(SpeechDetector::kRate),
                                 "-f", "s16le", "pipe:1"});
  return command;
}

}  // namespace

void addSoundOption(CLI::App& app, std::string& source) {
  app.add_option("--sound", source,
                 "What tells when somebody speaks: a file, microphone (the desktop's), alsa:DEVICE or none; "
                 "without it the sound of the first file")
      ->type_name("SOURCE");
}

SoundInput::SoundInput(const std::string& source, const std::vector<CameraInput>& inputs) {
  std::string from = source;
  if (source.empty() && !inputs.empty() && inputs.front().input.rfind("/dev/", 0) != 0) {
    from = inputs.front().input;
  }
  if (!from.empty() && from != "none") {
    mLive = from == kMicrophone || isAlsa(from);
    if (!source.empty() && !mLive && !std::ifstream(from)) {
      throw UsageError(from + ": cannot be read");
    }
    mProcess.emplace(commandFor(from), PipedProcess::Pipe::fromOutput);
  }
}

std::optional<bool> SoundInput::speechAt(std::int64_t ms) {
  pollfd waiting{mProcess ? mProcess->descriptor() : -1, POLLIN, 0};
  while (mProcess && (mLive ? poll(&waiting, 1, 0) > 0 : mHeardMs < ms)) {
    readBlock();
  }
  return mHeardMs > 0 && mProcess ? std::optional<bool>(mDetector.isSpeech()) : std::nullopt;
}

void SoundInput::readBlock() {
  auto* const bytes = reinterpret_cast<char*>(mBlock.data());
  const ssize_t count = read(mProcess->descriptor(), bytes + mFilled, sizeof(mBlock) - mFilled);
  if (count < 0 && errno == EINTR) {
    return;
  }
  if (count <= 0) {
    if (mLive) {
      PRB_LOGW("sound", "the microphone gives no sound%s", mHeardMs > 0 ? " any more" : "");
    }
    mProcess.reset();
    return;
  }
  mFilled += static_cast<std::size_t>(count);
  if (mFilled == sizeof(mBlock)) {
    mFilled = 0;
    mHeardMs += 10;
    mDetector.hear(mBlock);
  }
}

}  // namespace fyn::productionrules::video
