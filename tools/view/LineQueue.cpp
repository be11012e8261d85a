#include "tools/view/LineQueue.h"

#include <algorithm>
#include <utility>

#include "tools/view/LineHub.h"

namespace fyn::productionrules {

namespace {

/** What goes out in one piece, unless a single line is longer. */
constexpr std::size_t kPiece = 16'384;

}  // namespace

void LineQueue::put(std::shared_ptr<const SentLine> line) {
  const std::lock_guard lock(mMutex);
  if (mClosed) {
    return;
  }
  mBytes += line->event.size();
  mLines.push_back(std::move(line));
  while (mBytes > mLimits.leaveOutAbove && leaveOutOne()) {
  }
  if (mBytes > mLimits.giveUpAbove) {
    mClosed = true;
    mLines.clear();
  }
  mWakeUp.notify_one();
}

bool LineQueue::leaveOutOne() {
  const auto result = std::find_if(mLines.begin(), mLines.end(), [](const auto& sent) {
    return sent->line.worth == LineWorth::VisionResult;
  });
  if (result != mLines.end()) {
    ++mLeftOutResults;
    leaveOut(result);
    return true;
  }
  for (auto state = mLines.begin(); state != mLines.end(); ++state) {
    const ViewLine& line = (*state)->line;
    const auto isNewer = [&line](const auto& sent) { return sent->line.key == line.key; };
    if (line.worth == LineWorth::Replaceable && std::any_of(state + 1, mLines.end(), isNewer)) {
      ++mLeftOutStates;
      leaveOut(state);
      return true;
    }
  }
  return false;
}

void LineQueue::leaveOut(const std::deque<std::shared_ptr<const SentLine>>::iterator& line) {
  mLeftOutTime = (*line)->line.t;
  mBytes -= (*line)->event.size();
  mLines.erase(line);
}

std::string LineQueue::takeNotice() {
  const std::uint64_t results = std::exchange(mLeftOutResults, 0);
  const std::uint64_t states = std::exchange(mLeftOutStates, 0);
  if (results + states == 0) {
    return {};
  }
  return serverSentEvent(
      "", noticeLine(mLeftOutTime, std::to_string(results) + " vision results and " + std::to_string(states) +
                                       " waits and frames were left out: this page reads "
                                       "more slowly than they come"));
}

std::optional<std::string> LineQueue::next(std::chrono::milliseconds limit) {
  std::unique_lock lock(mMutex);
  mWakeUp.wait_for(lock, limit, [this] { return mClosed || !mLines.empty(); });
  if (mClosed) {
    return std::nullopt;
  }
  std::string piece = takeNotice();
  while (!mLines.empty() && (piece.empty() || piece.size() + mLines.front()->event.size() <= kPiece)) {
    piece += mLines.front()->event;
    mBytes -= mLines.front()->event.size();
    mLines.pop_front();
  }
  return piece;
}

void LineQueue::close() {
  const std::lock_guard lock(mMutex);
  mClosed = true;
  mWakeUp.notify_one();
}

bool LineQueue::isClosed() const {
  const std::lock_guard lock(mMutex);
  return mClosed;
}

}  // namespace fyn::productionrules
