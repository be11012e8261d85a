#pragma once

#include <ctime>

#include "platform/Clock.h"

/** A clock that goes on while the device sleeps: a picture held before is old afterwards. */
class DeviceClock final : public fyn::productionrules::Clock {
 public:
  std::optional<std::uint64_t> monotonicMs() const override {
    timespec now{};
    if (clock_gettime(CLOCK_BOOTTIME, &now) != 0) {
      return std::nullopt;
    }
    return static_cast<std::uint64_t>(milliseconds(now));
  }

  std::int64_t wallMs() const override {
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    return milliseconds(now);
  }

 private:
  static std::int64_t milliseconds(const timespec& time) {
    return std::int64_t{time.tv_sec} * 1000 + time.tv_nsec / 1000000;
  }
};
