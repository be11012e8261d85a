#include "tools/view/LineHub.h"

#include <algorithm>
#include <charconv>

namespace fyn::productionrules {

namespace {

/** Keys are made of topics, which others choose. */
constexpr std::size_t kMostKeys = 512;

/** A queue is the hub's and one page's; the page's end takes it away. */
class PageStream final : public LineStream {
 public:
  explicit PageStream(std::shared_ptr<LineQueue> queue) : mQueue(std::move(queue)) {}
  std::optional<std::string> next(std::chrono::milliseconds limit) override { return mQueue->next(limit); }

 private:
  const std::shared_ptr<LineQueue> mQueue;
};

}  // namespace

std::string serverSentEvent(const std::string& id, const ViewLine& line) {
  std::string event;
  event.reserve(line.text.size() + id.size() + 16);
  if (!id.empty()) {
    event.append("id: ").append(id).append("\n");
  }
  return event.append("data: ").append(line.text).append("\n\n");
}

std::string LineHub::newSession() {
  const auto now = std::chrono::system_clock::now().time_since_epoch();
  return std::to_string(std::chrono::duration_cast<std::chrono::milliseconds>(now).count());
}

void LineHub::put(ViewLine line) {
  const std::lock_guard lock(mMutex);
  ++mNumber;
  mTime = std::max(mTime, line.t);
  std::string event = serverSentEvent(mSession + '-' + std::to_string(mNumber), line);
  const auto sent = std::make_shared<const SentLine>(SentLine{std::move(line), std::move(event)});
  if (!sent->line.key.empty() && (mCurrent.size() < kMostKeys || mCurrent.count(sent->line.key) != 0)) {
    mCurrent[sent->line.key] = {mNumber, sent};
  }
  const auto gone = [&sent](const std::weak_ptr<LineQueue>& page) {
    const std::shared_ptr<LineQueue> queue = page.lock();
    if (queue != nullptr) {
      queue->put(sent);
    }
    return queue == nullptr;
  };
  mPages.erase(std::remove_if(mPages.begin(), mPages.end(), gone), mPages.end());
}

std::uint64_t LineHub::seenBy(const std::string& lastEventId) const {
  const std::string start = mSession + '-';
  std::uint64_t number = 0;
  if (lastEventId.compare(0, start.size(), start) == 0) {
    std::from_chars(lastEventId.data() + start.size(), lastEventId.data() + lastEventId.size(), number);
  }
  return number;
}

std::unique_ptr<LineStream> LineHub::open(const std::string& lastEventId) {
  const std::lock_guard lock(mMutex);
  const auto queue = std::make_shared<LineQueue>(mLimits);
  if (mClosed) {
    queue->close();
    return std::make_unique<PageStream>(queue);
  }
  const std::uint64_t seen = seenBy(lastEventId);
  if (!lastEventId.empty() && seen == 0) {
    const std::string words = "the viewer was started anew since this page was loaded; load it again";
    ViewLine notice = noticeLine(mTime, words);
    std::string event = serverSentEvent("", notice);
    queue->put(std::make_shared<const SentLine>(SentLine{std::move(notice), std::move(event)}));
  }
  std::vector<Current> current;
  for (const auto& [key, line] : mCurrent) {
    if (line.number > seen) {
      current.push_back(line);
    }
  }
  std::sort(current.begin(), current.end(),
            [](const Current& a, const Current& b) { return a.number < b.number; });
  for (const Current& line : current) {
    queue->put(line.line);
  }
  mPages.push_back(queue);
  return std::make_unique<PageStream>(queue);
}

void LineHub::close() {
  const std::lock_guard lock(mMutex);
  mClosed = true;
  for (const std::weak_ptr<LineQueue>& page : mPages) {
    if (const std::shared_ptr<LineQueue> queue = page.lock()) {
      queue->close();
    }
  }
}

ViewFeed LineHub::feed(std::string name) {
  return {"live",
          std::move(name),
          "/api/events",
          "text/event-stream",
          ":\n\n",
          [this](const std::string& lastEventId) { return open(lastEventId); },
          [this] { close(); }};
}

}  // namespace fyn::productionrules
