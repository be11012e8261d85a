#include "layouts/people/FalseBoxes.h"

#include <algorithm>

namespace fyn::productionrules {

namespace {

// In milliseconds. Who has been seen for so long was a person.
constexpr std::uint32_t kLongestMs = 15000;
constexpr std::uint32_t kRememberedMs = 180000;

// Of the longest life: one that is a little longer has just not been seen yet.
constexpr std::uint32_t kDoubtPercent = 125;

// Of a detector that has just begun the longest life says little yet: most boxes flash up, and a few stay.
constexpr std::uint32_t kBeginningMs = 10000;
constexpr std::uint32_t kDoubtAtFirstMs = 4000;

// A detector that sees so many in so short a time will see one that stays, too.
constexpr std::size_t kMany = 3;
constexpr std::uint32_t kManyWithinMs = 20000;
constexpr std::uint32_t kMoreThanFlashMs = 300;
constexpr std::uint32_t kDoubtOfManyMs = 12000;

}  // namespace

void FalseBoxes::add(std::uint32_t livedMs, std::uint32_t now) {
  if (livedMs >= kLongestMs) {
    return;
  }
  while (!mLives.empty() && now - mLives.front().endedAt > kRememberedMs) {
    mLives.pop_front();
  }
  while (!mLives.empty() && mLives.back().ms <= livedMs) {
    mLives.pop_back();
  }
  mLives.push_back({livedMs, now});
  if (livedMs >= kMoreThanFlashMs) {
    mLatestEnds.push_back(now);
  }
  if (mLatestEnds.size() > kMany) {
    mLatestEnds.pop_front();
  }
}

std::uint32_t FalseBoxes::doubtMs(std::uint32_t now) const {
  const auto longest = std::find_if(mLives.begin(), mLives.end(),
                                    [now](const Life& life) { return now - life.endedAt <= kRememberedMs; });
  if (longest == mLives.end()) {
    return 0;
  }
  const bool areMany = mLatestEnds.size() == kMany && now - mLatestEnds.front() <= kManyWithinMs;
  const std::uint32_t atFirst = mBeganAt && now - *mBeganAt <= kBeginningMs ? kDoubtAtFirstMs : 0;
  return std::max(areMany ? kDoubtOfManyMs : atFirst,
                  std::min(longest->ms * kDoubtPercent / 100, kLongestMs));
}

}  // namespace fyn::productionrules
