#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/Mutex.h"
#include "tools/view/TemporaryFile.h"
#include "tools/view/ViewLine.h"

namespace fyn::productionrules {

/** How a log goes out to pages: see viewer/protocol.md. */
struct LineForm {
  /** "recording" or "live". */
  const char* source;
  /** Where a page reads the lines, and what they are. */
  const char* path;
  const char* contentType;
  /** Goes out when nothing else does for a while; "" for nothing. */
  const char* heartbeat;
};

/**
 * The lines that pages are shown, in order, and a reader per page, each at a place of its own. The memory is
 * bounded however many lines there are and however slowly pages read. Used from any thread; outlives its
 * readers.
 *
 * Of a recording a page reads every line from the first, even while they still come: older ones lie in a
 * temporary file. Of a live source a page first gets what is current, the latest line of each key, then what
 * comes. When it falls far behind, old vision results and lines that newer ones have replaced are left out,
 * and a notice says how many; a page that falls behind even so is given up.
 */
class LineLog final : public LineSink {
 public:
  /** Of a live source, in bytes. */
  struct Limits {
    /** Lines that lie further behind the newest are left out where they may be. */
    std::int64_t leaveOutBehind = 1'000'000;
    /** When more waits for slow pages, the slowest is given up. */
    std::int64_t giveUpAbove = 16'000'000;
  };

  class Reader;

  /** Raises std::runtime_error when there is no temporary file to be had. */
  static LineLog ofRecording();

  /** `session` tells this run from others, in the ids of events; without it the time of the wall clock does.
   */
  static LineLog ofLive(const std::string& session = "");
  static LineLog ofLive(const std::string& session, const Limits& limits);

  const LineForm& form() const { return mForm; }

  /** Raises std::runtime_error when the line cannot be kept (a full disk). */
  void put(ViewLine line) override;

  /** There are no more lines: readers end when they have read all. */
  void finish();

  /** Ends every reader, now and for good. */
  void close();

  /** What one page reads. `lastEventId` is the last id that it has seen of a live source, "" for a new page.
   */
  std::unique_ptr<Reader> open(const std::string& lastEventId);

 private:
  struct Entry {
    std::uint64_t number;
    /** Bytes that went before it. */
    std::int64_t start;
    ViewLine line;
    /** As pages get it. */
    std::string text;
  };
  using Entries = std::deque<std::shared_ptr<const Entry>>;

  LineLog(const LineForm& form, std::string session, const Limits& limits);

  std::string textOf(const ViewLine& line, std::uint64_t number) const;
  void moveToFile() PR_REQUIRES(mMutex);
  void forgetWhatIsRead() PR_REQUIRES(mMutex);
  void leaveOutWhatIsOld() PR_REQUIRES(mMutex);
  bool isReplaced(const Entry& entry) const PR_REQUIRES(mMutex);
  std::uint64_t seenBy(const std::string& lastEventId) const;
  Entries currentAfter(std::uint64_t seen) const PR_REQUIRES(mMutex);

  const LineForm& mForm;
  const std::string mSession;
  const Limits mLimits;
  Mutex mMutex;
  ConditionVariable mMore;
  std::uint64_t mCount PR_GUARDED_BY(mMutex) = 0;
  std::int64_t mTime PR_GUARDED_BY(mMutex) = 0;
  /** Bytes of all lines ever put, and how many of them readers are woken for. */
  std::int64_t mEnd PR_GUARDED_BY(mMutex) = 0;
  std::int64_t mReady PR_GUARDED_BY(mMutex) = 0;
  /** In memory: kept from being left out, and those that came last. */
  Entries mOld PR_GUARDED_BY(mMutex);
  Entries mRecent PR_GUARDED_BY(mMutex);
  std::int64_t mHeld PR_GUARDED_BY(mMutex) = 0;
  /** Only of a recording: all lines before those in memory. */
  std::unique_ptr<TemporaryFile> mFile;
  /** Only of a live source: the latest line of each key. */
  std::map<std::string, std::shared_ptr<const Entry>> mCurrent PR_GUARDED_BY(mMutex);
  std::vector<Reader*> mReaders PR_GUARDED_BY(mMutex);
  bool mFinished PR_GUARDED_BY(mMutex) = false;
  bool mClosed PR_GUARDED_BY(mMutex) = false;
};

/** The place of one page in the log. Used by one thread at a time. */
class LineLog::Reader {
 public:
  ~Reader();
  Reader(const Reader&) = delete;
  Reader& operator=(const Reader&) = delete;

  /** The next piece of the answer, a few kilobytes; "" when none came within `limit`, nothing at the end. */
  std::optional<std::string> next(std::chrono::milliseconds limit);

 private:
  friend class LineLog;

  Reader(LineLog& log, std::int64_t place, Entries first, std::string words);

  void missed(const Entry& entry);
  std::string takeNotice();
  /** False when not all of the entries from its place on had room. */
  bool take(const Entries& entries, std::string& piece);

  LineLog& mLog;
  /** Bytes of the log that it is past. */
  std::int64_t mPlace;
  /** What comes before the lines from its place on. */
  Entries mFirst;
  /** Goes out next, as notices do. */
  std::string mWords;
  std::uint64_t mMissedResults = 0;
  std::uint64_t mMissedStates = 0;
  std::int64_t mMissedTime = 0;
  bool mGivenUp = false;
};

}  // namespace fyn::productionrules
