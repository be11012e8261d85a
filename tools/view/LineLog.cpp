#include "tools/view/LineLog.h"

#include <algorithm>
#include <charconv>
#include <utility>

namespace fyn::productionrules {

namespace {

using std::chrono::milliseconds;

constexpr LineForm kRecording{"recording", "/api/recording", "application/x-ndjson", ""};
constexpr LineForm kLive{"live", "/api/events", "text/event-stream", ":\n\n"};

/** Bytes that go out in one piece, unless a single line is longer. */
constexpr std::size_t kLivePiece = 16'384;
constexpr std::size_t kFilePiece = 65'536;

/** A page of a recording need not wait longer for a whole piece. */
constexpr milliseconds kMostPatience{200};

/** Keys are made of topics, which others choose. */
constexpr std::size_t kMostKeys = 512;

std::string wallTime() {
  const auto now = std::chrono::system_clock::now().time_since_epoch();
  return std::to_string(std::chrono::duration_cast<milliseconds>(now).count());
}

/** Without an id a page keeps the one before. */
std::string serverSentEvent(const std::string& id, const std::string& data) {
  std::string event;
  event.reserve(id.size() + data.size() + 16);
  if (!id.empty()) {
    event.append("id: ").append(id).append("\n");
  }
  return event.append("data: ").append(data).append("\n\n");
}

}  // namespace

LineLog::LineLog(const LineForm& form, std::string session, const Limits& limits)
    : mForm(form), mSession(std::move(session)), mLimits(limits) {
  if (&form == &kRecording) {
    mFile = std::make_unique<TemporaryFile>();
  }
}

LineLog LineLog::ofRecording() {
  return LineLog(kRecording, "", {});
}

LineLog LineLog::ofLive(const std::string& session) {
  return ofLive(session.empty() ? wallTime() : session, {});
}

LineLog LineLog::ofLive(const std::string& session, const Limits& limits) {
  return LineLog(kLive, session, limits);
}

std::string LineLog::textOf(const ViewLine& line, std::uint64_t number) const {
  return mFile != nullptr ? line.text + '\n'
                          : serverSentEvent(mSession + '-' + std::to_string(number), line.text);
}

void LineLog::put(ViewLine line) {
  const MutexLock lock(mMutex);
  ++mCount;
  mTime = std::max(mTime, line.t);
  std::string text = textOf(line, mCount);
  const auto size = static_cast<std::int64_t>(text.size());
  const auto entry = std::make_shared<const Entry>(Entry{mCount, mEnd, std::move(line), std::move(text)});
  mRecent.push_back(entry);
  mEnd += size;
  mHeld += size;
  if (mFile != nullptr) {
    if (mHeld >= static_cast<std::int64_t>(kFilePiece)) {
      moveToFile();
    }
    return;
  }
  const std::string& key = entry->line.key;
  if (!key.empty() && (mCurrent.size() < kMostKeys || mCurrent.count(key) != 0)) {
    mCurrent[key] = entry;
  }
  mReady = mEnd;
  leaveOutWhatIsOld();
  forgetWhatIsRead();
  mMore.notifyAll();
}

void LineLog::moveToFile() {
  std::string all;
  all.reserve(static_cast<std::size_t>(mHeld));
  for (const auto& entry : mRecent) {
    all += entry->text;
  }
  mFile->append(all);
  mRecent.clear();
  mHeld = 0;
  mReady = mEnd;
  mMore.notifyAll();
}

bool LineLog::isReplaced(const Entry& entry) const {
  const auto current = mCurrent.find(entry.line.key);
  return current != mCurrent.end() && current->second->number > entry.number;
}

void LineLog::leaveOutWhatIsOld() {
  while (!mRecent.empty() && mEnd - mRecent.front()->start > mLimits.leaveOutBehind) {
    const std::shared_ptr<const Entry> entry = std::move(mRecent.front());
    mRecent.pop_front();
    const LineWorth worth = entry->line.worth;
    if (worth == LineWorth::Kept || (worth == LineWorth::Replaceable && !isReplaced(*entry))) {
      mOld.push_back(entry);
      continue;
    }
    mHeld -= static_cast<std::int64_t>(entry->text.size());
    for (Reader* const reader : mReaders) {
      reader->missed(*entry);
    }
  }
}

void LineLog::forgetWhatIsRead() {
  for (Entries* const entries : {&mOld, &mRecent}) {
    while (!entries->empty()) {
      const Entry& oldest = *entries->front();
      const bool tooMuch = mHeld > mLimits.giveUpAbove;
      bool awaited = false;
      for (Reader* const reader : mReaders) {
        const bool waits = !reader->mGivenUp && reader->mPlace <= oldest.start;
        reader->mGivenUp = reader->mGivenUp || (waits && tooMuch);
        awaited = awaited || (waits && !tooMuch);
      }
      if (awaited) {
        return;
      }
      mHeld -= static_cast<std::int64_t>(oldest.text.size());
      entries->pop_front();
    }
  }
}

void LineLog::finish() {
  const MutexLock lock(mMutex);
  mFinished = true;
  mMore.notifyAll();
}

void LineLog::close() {
  const MutexLock lock(mMutex);
  mClosed = true;
  mMore.notifyAll();
}

std::uint64_t LineLog::seenBy(const std::string& lastEventId) const {
  const std::string start = mSession + '-';
  std::uint64_t number = 0;
  if (lastEventId.compare(0, start.size(), start) == 0) {
    std::from_chars(lastEventId.data() + start.size(), lastEventId.data() + lastEventId.size(), number);
  }
  return number;
}

LineLog::Entries LineLog::currentAfter(std::uint64_t seen) const {
  Entries current;
  for (const auto& [key, entry] : mCurrent) {
    if (entry->number > seen) {
      current.push_back(entry);
    }
  }
  std::sort(current.begin(), current.end(),
            [](const auto& a, const auto& b) { return a->number < b->number; });
  return current;
}

std::unique_ptr<LineLog::Reader> LineLog::open(const std::string& lastEventId) {
  const MutexLock lock(mMutex);
  if (mFile != nullptr) {
    return std::unique_ptr<Reader>(new Reader(*this, 0, {}, {}));
  }
  const std::uint64_t seen = seenBy(lastEventId);
  std::string words;
  if (!lastEventId.empty() && seen == 0) {
    words = "the viewer was started anew since this page was loaded; load it again";
  }
  return std::unique_ptr<Reader>(new Reader(*this, mEnd, currentAfter(seen), std::move(words)));
}

// ---- Reader ----

LineLog::Reader::Reader(LineLog& log, std::int64_t place, Entries first, std::string words)
    : mLog(log), mPlace(place), mFirst(std::move(first)), mWords(std::move(words)), mMissedTime(log.mTime) {
  mLog.mReaders.push_back(this);
}

LineLog::Reader::~Reader() {
  const MutexLock lock(mLog.mMutex);
  mLog.mReaders.erase(std::find(mLog.mReaders.begin(), mLog.mReaders.end(), this));
}

void LineLog::Reader::missed(const Entry& entry) {
  if (mPlace <= entry.start) {
    ++(entry.line.worth == LineWorth::VisionResult ? mMissedResults : mMissedStates);
    mMissedTime = entry.line.t;
  }
}

std::string LineLog::Reader::takeNotice() {
  const std::uint64_t results = std::exchange(mMissedResults, 0);
  const std::uint64_t states = std::exchange(mMissedStates, 0);
  std::string words = std::exchange(mWords, {});
  if (results + states > 0) {
    words = std::to_string(results) + " vision results and " + std::to_string(states) +
            " waits and frames were left out: this page reads more slowly than they come";
  }
  return words.empty() ? words : serverSentEvent("", noticeLine(mMissedTime, words).text);
}

bool LineLog::Reader::take(const Entries& entries, std::string& piece) {
  auto entry = std::lower_bound(entries.begin(), entries.end(), mPlace,
                                [](const auto& line, std::int64_t place) { return line->start < place; });
  for (; entry != entries.end() && (piece.empty() || piece.size() + (*entry)->text.size() <= kLivePiece);
       ++entry) {
    piece += (*entry)->text;
    mPlace = (*entry)->start + static_cast<std::int64_t>((*entry)->text.size());
  }
  return entry == entries.end();
}

std::optional<std::string> LineLog::Reader::next(milliseconds limit) {
  MutexLock lock(mLog.mMutex);
  mLog.mMore.waitFor(lock, mLog.mFile != nullptr ? std::min(limit, kMostPatience) : limit,
                     [this]() PR_REQUIRES(mLog.mMutex) {
                       return mLog.mClosed || mLog.mFinished || mGivenUp || mLog.mReady > mPlace ||
                              !mFirst.empty() || !mWords.empty();
                     });
  if (mLog.mClosed || mGivenUp || (mLog.mFinished && mPlace == mLog.mEnd)) {
    return std::nullopt;
  }
  const std::int64_t inFile = mLog.mEnd - mLog.mHeld - mPlace;
  if (mLog.mFile != nullptr && inFile > 0) {
    lock.unlock();
    std::string piece = mLog.mFile->read(mPlace, std::min(kFilePiece, static_cast<std::size_t>(inFile)));
    mPlace += static_cast<std::int64_t>(piece.size());
    return piece.empty() ? std::nullopt : std::optional(std::move(piece));
  }
  std::string piece = takeNotice();
  while (!mFirst.empty() && (piece.empty() || piece.size() + mFirst.front()->text.size() <= kLivePiece)) {
    piece += mFirst.front()->text;
    mFirst.pop_front();
  }
  if (mFirst.empty() && take(mLog.mOld, piece)) {
    take(mLog.mRecent, piece);
  }
  return piece;
}

}  // namespace fyn::productionrules
