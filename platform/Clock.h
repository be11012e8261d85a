#pragma once

#include <cstdint>
#include <optional>

namespace fyn::productionrules {

/**
 * The two clocks of a device. Everything that the service does at a time reads one of them, so a test or a
 * replay drives every behaviour by replacing this one object.
 */
class Clock {
 public:
  virtual ~Clock() = default;

  /** Milliseconds of the monotonic clock; nothing when it cannot be read. */
  virtual std::optional<std::uint64_t> monotonicMs() const = 0;

  /** Milliseconds since 1970. */
  virtual std::int64_t wallMs() const = 0;
};

/** The clock of the machine itself. */
class SteadyClock final : public Clock {
 public:
  std::optional<std::uint64_t> monotonicMs() const override;
  std::int64_t wallMs() const override;
};

/**
 * Monotonic milliseconds of the process's clock, truncated to 32 bits; 0 when the clock cannot be read.
 * Wraps after about 49.7 days; all timer arithmetic is unsigned 32-bit, so the wrap is harmless.
 */
std::uint32_t GetTicks();

/** Wall-clock milliseconds since 1970, the time in the names of dump files. */
std::int64_t getWallTs64();

}  // namespace fyn::productionrules
