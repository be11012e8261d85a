#pragma once

#include <cstdint>

namespace fyn::productionrules {

/**
 * Monotonic milliseconds of the current clock, truncated to 32 bits; 0 when the clock cannot be read. Wraps
 * after about 49.7 days; all timer arithmetic is unsigned 32-bit, so the wrap is harmless.
 */
std::uint32_t GetTicks();

/** Wall-clock milliseconds since 1970, the time in the names of dump files. */
std::int64_t getWallTs64();

}  // namespace fyn::productionrules
