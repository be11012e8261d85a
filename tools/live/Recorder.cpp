#include "tools/live/Recorder.h"

#include <filesystem>

#include "platform/Topics.h"
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
  if (mOptions.maxBytes != 0) {
    mOptions.rules.check(numbered(1));
  }
  open(mOptions.rules);
}

void Recorder::open(const OutputRules& rules) {
  mFile.emplace(mOptions.path, rules);
  mBytes = 0;
}

std::string Recorder::numbered(int number) const {
  return number == 0 ? mOptions.path : mOptions.path + '.' + std::to_string(number);
}

/** Raises std::runtime_error, before anything is overwritten that has not been moved away. */
void Recorder::rotate() {
  if (!mFile->finish()) {
    throw std::runtime_error("the file cannot be written");
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
      throw std::runtime_error("the file cannot be moved away");
    }
  }
  // What still stands there is an own file, of which only one is to be kept.
  open({true, {}});
}

void Recorder::write(const RecordingEvent& event) {
  const std::string line = recordingLine(event) + '\n';
  mFile->stream() << line;
  mBytes += line.size();
}

void Recorder::writeBeginning(std::int64_t t) {
  if (!mOptions.recordedBy.empty()) {
    write({t, RecordedBy{mOptions.recordedBy}});
  }
  if (mOptions.settings) {
    for (RecordingEvent& event : mOptions.settings()) {
      event.t = t;
      write(event);
    }
  }
  for (const auto& [topic, message] : mCameraMessages) {
    write({t, BusMessage{topic, message}});
  }
}

void Recorder::record(const std::string& topic, const std::string& message) {
  const std::int64_t t = mClock() - mStart;
  if (mBytes == 0) {
    writeBeginning(0);
  } else if (mOptions.maxBytes != 0 && mBytes >= mOptions.maxBytes) {
    rotate();
    writeBeginning(t);
  } else if (mOptions.settings && topic == topics::kControl && message == control::kConfigChange) {
    for (RecordingEvent& event : mOptions.settings()) {
      event.t = t;
      write(event);
    }
  }
  if (isCameraMessage(topic)) {
    mCameraMessages[topic] = message;
  }
  write({t, BusMessage{topic, message}});
  mFile->putInPlace();
  ++mMessages;
}

void Recorder::onMessage(const std::string& topic, const std::string& message) {
  const MutexLock lock(mMutex);
  if (mHasFailed) {
    return;
  }
  try {
    record(topic, message);
    mHasFailed = !mFile->stream();
  } catch (const std::runtime_error&) {
    mHasFailed = true;
  }
}

std::uint64_t Recorder::messages() const {
  const MutexLock lock(mMutex);
  return mMessages;
}

bool Recorder::knowsCameras() const {
  const MutexLock lock(mMutex);
  return !mCameraMessages.empty();
}

bool Recorder::hasFailed() const {
  const MutexLock lock(mMutex);
  return mHasFailed;
}

void Recorder::flush() {
  const MutexLock lock(mMutex);
  mFile->stream().flush();
}

void Recorder::finish() {
  const MutexLock lock(mMutex);
  mHasFailed = !mFile->finish() || mHasFailed;
  if (mHasFailed) {
    throw std::runtime_error(mOptions.path + ": cannot be written; the recording is not whole");
  }
}

}  // namespace fyn::productionrules
