#include "tools/live/Recorder.h"

#include <cerrno>
#include <cstring>
#include <filesystem>

#include "platform/Topics.h"
#include "tools/base/UsageError.h"
#include "tools/recording/RecordingWriter.h"

namespace fyn::productionrules {

namespace {

bool isCameraMessage(const std::string& topic) {
  return topic == topics::kCamera || topic == topics::kCameras ||
         com::quil::pubsub::topicCovers(topics::kCameraParameters, topic);
}

}  // namespace

Recorder::Recorder(RecorderOptions options, std::function<std::int64_t()> clock)
    : mOptions(std::move(options)), mClock(std::move(clock)), mStart(mClock()) {
  open();
  if (!mFile) {
    throw UsageError(mOptions.path + ": cannot be opened for writing: " + std::strerror(errno));
  }
}

void Recorder::open() {
  mFile = std::ofstream(mOptions.path, std::ios::binary | std::ios::trunc);
  mBytes = 0;
}

std::string Recorder::numbered(int number) const {
  return number == 0 ? mOptions.path : mOptions.path + '.' + std::to_string(number);
}

/** What goes wrong leaves the file failed: nothing is overwritten that has not been moved away. */
void Recorder::rotate() {
  mFile.close();
  if (!mFile) {
    return;
  }
  int oldest = mOptions.maxFiles - 1;
  if (mOptions.maxFiles == 0) {
    for (oldest = 1; std::filesystem::exists(numbered(oldest)); ++oldest) {
    }
  }
  for (int number = oldest; number >= 1; --number) {
    std::error_code fault;
    std::filesystem::rename(numbered(number - 1), numbered(number), fault);
    if (fault && fault != std::errc::no_such_file_or_directory) {
      mFile.setstate(std::ios::failbit);
      return;
    }
  }
  open();
}

void Recorder::write(std::int64_t t, const std::string& topic, const std::string& message) {
  const std::string line = recordingLine({t, BusMessage{topic, message}}) + '\n';
  mFile << line;
  mBytes += line.size();
}

void Recorder::onMessage(const std::string& topic, const std::string& message) {
  const MutexLock lock(mMutex);
  const std::int64_t t = mClock() - mStart;
  if (mOptions.maxBytes != 0 && mBytes >= mOptions.maxBytes) {
    rotate();
    for (const auto& [cameraTopic, cameraMessage] : mCameraMessages) {
      write(t, cameraTopic, cameraMessage);
    }
  }
  if (isCameraMessage(topic)) {
    mCameraMessages[topic] = message;
  }
  write(t, topic, message);
  ++mMessages;
}

std::uint64_t Recorder::messages() const {
  const MutexLock lock(mMutex);
  return mMessages;
}

bool Recorder::hasFailed() const {
  const MutexLock lock(mMutex);
  return !mFile;
}

void Recorder::finish() {
  const MutexLock lock(mMutex);
  mFile.flush();
  if (!mFile) {
    throw std::runtime_error(mOptions.path + ": cannot be written; the recording is not whole");
  }
}

}  // namespace fyn::productionrules
