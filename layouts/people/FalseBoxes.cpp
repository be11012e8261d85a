#include "layouts/people/FalseBoxes.h"

#include <algorithm>

namespace fyn::productionrules {

namespace {

// In milliseconds. Who has been seen for so long was a person.
constexpr std::uint32_t kLongestMs = 15000;
constexpr std::uint32_t kRememberedMs = 180000;

// Of the longest life: one that is a little longer has just not been seen yet.
constexpr std::uint32_t kDoubtPercent = 125;

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
}

std::uint32_t FalseBoxes::doubtMs(std::uint32_t now) const {
  const auto longest = std::find_if(mLives.begin(), mLives.end(),
                                    [now](const Life& life) { return now - life.endedAt <= kRememberedMs; });
  return longest != mLives.end() ? std::min(longest->ms * kDoubtPercent / 100, kLongestMs) : 0;
}

}  // namespace fyn::productionrules
