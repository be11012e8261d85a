#include "platform/SteadyClock.h"

#include <ctime>

namespace fyn::productionrules {

std::optional<std::uint64_t> SteadyClock::monotonicMs() const {
  timespec now{};
  if (clock_gettime(CLOCK_MONOTONIC, &now) != 0) {
    return std::nullopt;
  }
  return static_cast<std::uint64_t>(now.tv_sec) * 1000U + static_cast<std::uint64_t>(now.tv_nsec) / 1000000U;
}

std::int64_t SteadyClock::wallMs() const {
  timespec now{};
  if (clock_gettime(CLOCK_REALTIME, &now) != 0) {
    return 0;
  }
  return static_cast<std::int64_t>(now.tv_sec) * 1000 + now.tv_nsec / 1000000;
}

}  // namespace fyn::productionrules
