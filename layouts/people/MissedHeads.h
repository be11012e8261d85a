#pragma once

#include <cstdint>

/** For how long a head that a detector misses counts as there at most, in milliseconds: anywhere, and where
 * people leave, which is within that many head widths of a side of the image. */
namespace fyn::productionrules {

// With 2000 the picture changes four times as often when every fifth head is missed.
constexpr std::uint32_t kMissedMs = 3000;
constexpr std::uint32_t kMissedAtBorderMs = 300;
constexpr double kSideBorder = 0.5;

}  // namespace fyn::productionrules
