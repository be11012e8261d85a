#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "tools/view/LineQueue.h"

namespace fyn::productionrules {

/**
 * Hands every line to every page that is connected, as server-sent events. A page that connects first gets
 * what is current: the latest line of each key. Used from any thread.
 */
class LineHub final : public LineSink {
 public:
  /** `session` tells this run from others, in the ids of events. */
  explicit LineHub(std::string session = newSession(), const LineQueue::Limits& limits = {})
      : mSession(std::move(session)), mLimits(limits) {}

  /** The time of the wall clock, as a text. */
  static std::string newSession();

  void put(ViewLine line) override;

  /** What one page reads. `lastEventId` is the last id that it has seen in this session, or any other text.
   */
  std::unique_ptr<LineStream> open(const std::string& lastEventId);

  /** Ends every page's stream, now and for good. */
  void close();

  /** The feed that shows this hub. */
  ViewFeed feed(std::string name);

 private:
  struct Current {
    std::uint64_t number;
    std::shared_ptr<const SentLine> line;
  };

  std::uint64_t seenBy(const std::string& lastEventId) const;

  const std::string mSession;
  const LineQueue::Limits mLimits;
  std::mutex mMutex;
  std::uint64_t mNumber = 0;
  std::int64_t mTime = 0;
  std::map<std::string, Current> mCurrent;
  std::vector<std::weak_ptr<LineQueue>> mPages;
  bool mClosed = false;
};

/** A line as a server-sent event; without an id the page keeps the one before. */
std::string serverSentEvent(const std::string& id, const ViewLine& line);

}  // namespace fyn::productionrules
