#pragma once

#include <cstdint>
#include <deque>
#include <optional>

namespace fyn::productionrules {

/**
 * For how long a detector has seen heads of late where none are: what lives longer is a person. Times are
 * ticks in milliseconds.
 */
class FalseBoxes {
 public:
  /** People are in the detector's first result. */
  void begin(std::uint32_t now) { mBeganAt = now; }

  /** A box has vanished, neither walking nor there from the beginning, that had been seen for `livedMs`. */
  void add(std::uint32_t livedMs, std::uint32_t now);

  /** For how long somebody must have been seen of whom nothing else tells that it is a person. */
  std::uint32_t doubtMs(std::uint32_t now) const;

 private:
  struct Life {
    std::uint32_t ms = 0;
    std::uint32_t endedAt = 0;
  };

  std::optional<std::uint32_t> mBeganAt;
  /** The longest first; of two the shorter one counts for as long as it ended later. */
  std::deque<Life> mLives;
  /** When the latest of those ended that did not just flash up. */
  std::deque<std::uint32_t> mLatestEnds;
};

}  // namespace fyn::productionrules
