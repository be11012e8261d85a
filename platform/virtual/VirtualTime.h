#pragma once

#include <functional>
#include <map>

#include "platform/Clock.h"
#include "platform/DelayedTasks.h"

namespace fyn::productionrules {

/**
 * A clock that stands still until it is told to move, and the tasks that fall due on the way. Used from one
 * thread.
 */
class VirtualTime final : public Clock, public DelayedTasks {
 public:
  /** The monotonic and the wall clock read these plus the virtual time. */
  VirtualTime(std::uint64_t monotonicStartMs, std::int64_t wallStartMs)
      : mMonotonicStart(monotonicStartMs), mWallStart(wallStartMs) {}

  std::optional<std::uint64_t> monotonicMs() const override { return mMonotonicStart + mNow; }
  std::int64_t wallMs() const override { return mWallStart + static_cast<std::int64_t>(mNow); }
  void runAfter(std::chrono::milliseconds delay, std::function<void()> task) override;

  /** Milliseconds since the start. */
  std::uint64_t now() const { return mNow; }

  /** Moves to `time` (never back), running every task at its own due time, in order of due time and start. */
  void advanceTo(std::uint64_t time);

 private:
  const std::uint64_t mMonotonicStart;
  const std::int64_t mWallStart;
  std::uint64_t mNow = 0;
  std::multimap<std::uint64_t, std::function<void()>> mTasks;
};

}  // namespace fyn::productionrules
