#pragma once

#include <cstdint>
#include <set>

#include "model/Layout.h"

namespace fyn::productionrules {

/** How long a picture must have been on screen before another one comes. Milliseconds. */
class SpeakerShots {
 public:
  /** That picture goes off screen. */
  void end(const Layout& picture);

  /** Whether the candidate is the picture that was on screen before the one that is there now. */
  bool isReturn(const Layout& candidate) const;

  /** How long a picture stays before the candidate replaces it. */
  std::uint32_t leastMs(const Layout& candidate) const;

 private:
  FramingType mType = FramingType::NONE;
  std::set<std::int64_t> mPeople;
};

}  // namespace fyn::productionrules
