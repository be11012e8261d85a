#pragma once

#include <cstdint>
#include <fstream>
#include <functional>
#include <map>
#include <string>

#include "platform/Mutex.h"
#include "platform/PubSub.h"
#include "tools/recording/RecordingEvent.h"

namespace fyn::productionrules {

struct RecorderOptions {
  std::string path;
  /** Bytes after which the next file begins; 0 for one file without limit. */
  std::uint64_t maxBytes = 0;
  /** Files that are kept, the current one included; 0 for all. */
  int maxFiles = 0;
};

/**
 * Writes every message that it receives to a recording. A full file PATH becomes PATH.1, PATH.1 becomes
 * PATH.2 and so on; the oldest is deleted when there are too many. Each file begins with the latest camera
 * messages, so each can be replayed alone. Messages may come from any thread.
 */
class Recorder final : public com::quil::pubsub::IPubSubListener {
 public:
  /** `clock` gives milliseconds that do not decrease; the first call is time 0. Raises UsageError when the
   * file cannot be made. */
  Recorder(RecorderOptions options, std::function<std::int64_t()> clock);

  void onMessage(const std::string& topic, const std::string& message) override;

  /** Writes out what was received. Raises std::runtime_error when something was lost (a full disk). */
  void finish();

  std::uint64_t messages() const;

  /** Whether a message could not be written. */
  bool hasFailed() const;

 private:
  std::string numbered(int number) const;
  void open() PR_REQUIRES(mMutex);
  void rotate() PR_REQUIRES(mMutex);
  void write(std::int64_t t, const std::string& topic, const std::string& message) PR_REQUIRES(mMutex);

  const RecorderOptions mOptions;
  const std::function<std::int64_t()> mClock;
  const std::int64_t mStart;
  mutable Mutex mMutex;
  std::ofstream mFile PR_GUARDED_BY(mMutex);
  std::uint64_t mBytes PR_GUARDED_BY(mMutex) = 0;
  std::uint64_t mMessages PR_GUARDED_BY(mMutex) = 0;
  /** By topic. */
  std::map<std::string, std::string> mCameraMessages PR_GUARDED_BY(mMutex);
};

}  // namespace fyn::productionrules
