#pragma once

#include <cstdint>
#include <functional>

namespace fyn::productionrules {

/** A clock of 32-bit milliseconds. */
using TickFunction = std::function<std::uint32_t()>;

/** One anti-jitter hold. */
struct Timer {
  /** Milliseconds. */
  std::uint32_t duration = 0;
  /** Ticks at the start; 0 means not started. */
  std::uint32_t startTicks = 0;
  /** Latched once the timer has been seen expired. */
  bool expired = false;

  bool isStarted() const { return startTicks != 0; }
};

Timer getTimer(std::uint32_t duration, std::uint32_t startTicks);

/** Clears all three fields, so a timer that is started again needs a new duration. */
void resetTimer(Timer& timer);

/**
 * Whether the hold is over; latched. A timer that was never started never expires. `now` is not called for a
 * latched one; an empty `now` raises std::bad_function_call where it would be called.
 */
bool isTimerExpire(Timer& timer, const TickFunction& now);

/** Milliseconds that `timer` has still to wait at `now`; 0 when it is not started or overdue. */
std::uint32_t remainingMs(const Timer& timer, std::uint32_t now);

}  // namespace fyn::productionrules
