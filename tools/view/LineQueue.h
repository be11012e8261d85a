#pragma once

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>

#include "tools/view/LineStream.h"
#include "tools/view/ViewLine.h"

namespace fyn::productionrules {

/** A line as all pages get it. */
struct SentLine {
  ViewLine line;
  /** The server-sent event of it. */
  std::string event;
};

/**
 * The lines that wait for one page. When it reads more slowly than they come, the oldest vision results are
 * left out, then lines that newer ones have replaced; a notice says how many. A page that falls behind even
 * so is given up.
 */
class LineQueue final : public LineStream {
 public:
  struct Limits {
    /** Bytes above which lines are left out. */
    std::size_t leaveOutAbove = 1'000'000;
    /** Bytes above which the page is given up. */
    std::size_t giveUpAbove = 16'000'000;
  };

  explicit LineQueue(const Limits& limits) : mLimits(limits) {}

  void put(std::shared_ptr<const SentLine> line);
  std::optional<std::string> next(std::chrono::milliseconds limit) override;
  void close();
  bool isClosed() const;

 private:
  bool leaveOutOne();
  void leaveOut(const std::deque<std::shared_ptr<const SentLine>>::iterator& line);
  std::string takeNotice();

  const Limits mLimits;
  mutable std::mutex mMutex;
  std::condition_variable mWakeUp;
  std::deque<std::shared_ptr<const SentLine>> mLines;
  std::size_t mBytes = 0;
  std::uint64_t mLeftOutResults = 0;
  std::uint64_t mLeftOutStates = 0;
  std::int64_t mLeftOutTime = 0;
  bool mClosed = false;
};

}  // namespace fyn::productionrules
