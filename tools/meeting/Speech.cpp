#include "tools/meeting/Speech.h"

#include <algorithm>

namespace fyn::productionrules {

Speech::Speech(const std::vector<SpeechTurn>& turns) {
  std::vector<SpeechTurn> ordered = turns;
  std::stable_sort(ordered.begin(), ordered.end(),
                   [](const SpeechTurn& a, const SpeechTurn& b) { return a.start < b.start; });
  for (const SpeechTurn& turn : ordered) {
    auto& stretches = mStretches[turn.person];
    if (!stretches.empty() && turn.start <= stretches.back().second) {
      stretches.back().second = std::max(stretches.back().second, turn.end);
    } else {
      stretches.emplace_back(turn.start, turn.end);
    }
  }
}

bool Speech::speaks(std::int32_t person, std::int64_t t) const {
  const auto stretches = mStretches.find(person);
  if (stretches == mStretches.end()) {
    return false;
  }
  const auto next =
      std::upper_bound(stretches->second.begin(), stretches->second.end(), t,
                       [](std::int64_t time, const auto& stretch) { return time < stretch.first; });
  return next != stretches->second.begin() && t < std::prev(next)->second;
}

}  // namespace fyn::productionrules
