#include "tools/meeting/Conversation.h"

#include <algorithm>

namespace fyn::productionrules {

namespace {

constexpr std::uint64_t kStream = 1'000'000;

/** Milliseconds. */
constexpr std::array<Quantile, 4> kTurnLength{{{0, 200}, {430, 1000}, {800, 6000}, {1000, 25000}}};
constexpr std::array<Quantile, 4> kPause{{{0, 100}, {600, 900}, {950, 3000}, {1000, 20000}}};

constexpr std::int64_t kOverlapChance = 30'000;
constexpr std::int64_t kChangeOfSpeakerChance = 800'000;
constexpr std::int64_t kOverlap = 500;

std::vector<std::size_t> peopleThere(const std::vector<PersonPath>& paths, std::int64_t t) {
  std::vector<std::size_t> there;
  for (std::size_t person = 0; person < paths.size(); ++person) {
    if (paths[person].isThere(t)) {
      there.push_back(person);
    }
  }
  return there;
}

}  // namespace

std::vector<SpeechTurn> makeConversation(std::uint64_t seed, const std::vector<PersonPath>& paths,
                                         std::int64_t duration) {
  Random random(seed, kStream);
  std::vector<SpeechTurn> turns;
  std::size_t speaker = 0;
  for (std::int64_t t = 4000; t < duration;) {
    const std::vector<std::size_t> there = peopleThere(paths, t);
    const bool canGoOn = std::find(there.begin(), there.end(), speaker) != there.end();
    if (there.empty()) {
      t += 1000;
      continue;
    }
    if (!canGoOn || random.chance(kChangeOfSpeakerChance)) {
      speaker =
          there[static_cast<std::size_t>(random.between(0, static_cast<std::int64_t>(there.size()) - 1))];
    }
    const std::int64_t end = std::min(t + draw(random, kTurnLength), paths[speaker].waypoints().back().t);
    turns.push_back({t, end, static_cast<std::int32_t>(speaker) + 1});
    t = random.chance(kOverlapChance) ? std::max(t + 100, end - kOverlap) : end + draw(random, kPause);
  }
  return turns;
}

}  // namespace fyn::productionrules
