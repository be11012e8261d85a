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

}  // namespace fyn::productionrules
