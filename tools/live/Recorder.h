#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "platform/Mutex.h"
#include "platform/PubSub.h"
#include "tools/base/NewFile.h"
#include "tools/recording/RecordingEvent.h"

namespace fyn::productionrules {

struct RecorderOptions {
  std::string path;
  /** Bytes after which the next file begins; 0 for one file without limit. */
  std::uint64_t maxBytes = 0;
  /** Files that are kept, the current one included; 0 for all. */
  int maxFiles = 0;
  OutputRules rules = {};
  /** What else a replay needs: the lines that put it into force as it is now; asked for with each file and
   * each "config-change". Null when nobody knows. */
  std::function<std::vector<RecordingEvent>()> settings = nullptr;
  /** Who records what, a JSON object; "" for no such line. */
  std::string recordedBy = {};
};

/**
 * Writes every message that it receives to a recording. A full file PATH becomes PATH.1, PATH.1 becomes
 * PATH.2 and so on; the oldest is deleted when there are too many. Each file begins with the settings and
 * the latest camera messages, so each can be replayed alone. A file is in its place from its first message
 * on, so what stands there stays when nothing comes. Messages may come from any thread.
 */
class Recorder final : public com::quil::pubsub::IPubSubListener {
 public:
  /** `clock` gives milliseconds that do not decrease; the first call is time 0. Raises UsageError when the
   * rules forbid a file or it cannot be made. */
  Recorder(RecorderOptions options, std::function<std::int64_t()> clock);

  void onMessage(const std::string& topic, const std::string& message) override;

  /** Lets others read what was received so far. */
  void flush();

  /** Writes out what was received; nothing is recorded after it. Raises std::runtime_error when something was
   * lost (a full disk). */
  void finish();

  std::uint64_t messages() const;

  /** Whether a camera document has come. */
  bool knowsCameras() const;

  /** Whether a message could not be written. */
  bool hasFailed() const;

 private:
  std::string numbered(int number) const;
  void open(const OutputRules& rules) PR_REQUIRES(mMutex);
  void rotate() PR_REQUIRES(mMutex);
  void record(const std::string& topic, const std::string& message) PR_REQUIRES(mMutex);
  void writeBeginning(std::int64_t t) PR_REQUIRES(mMutex);
  void write(const RecordingEvent& event) PR_REQUIRES(mMutex);

  const RecorderOptions mOptions;
  const std::function<std::int64_t()> mClock;
  const std::int64_t mStart;
  mutable Mutex mMutex;
  std::optional<NewFile> mFile PR_GUARDED_BY(mMutex);
  bool mHasFailed PR_GUARDED_BY(mMutex) = false;
  std::uint64_t mBytes PR_GUARDED_BY(mMutex) = 0;
  std::uint64_t mMessages PR_GUARDED_BY(mMutex) = 0;
  /** By topic. */
  std::map<std::string, std::string> mCameraMessages PR_GUARDED_BY(mMutex);
};

}  // namespace fyn::productionrules
