#include "model/Timer.h"

namespace fyn::productionrules {

Timer getTimer(std::uint32_t duration, std::uint32_t startTicks) {
  return {duration, startTicks, false};
}

void resetTimer(Timer& timer) {
  timer = {};
}

bool isTimerExpire(Timer& timer, const TickFunction& now) {
  if (timer.expired) {
    return true;
  }
  if (!timer.isStarted()) {
    return false;
  }
  timer.expired = now() - timer.startTicks >= timer.duration;
  return timer.expired;
}

std::uint32_t remainingMs(const Timer& timer, std::uint32_t now) {
  const std::uint32_t elapsed = now - timer.startTicks;
  if (!timer.isStarted() || timer.expired || elapsed >= timer.duration) {
    return 0;
  }
  return timer.duration - elapsed;
}

}  // namespace fyn::productionrules
