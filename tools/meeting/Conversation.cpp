#include "tools/meeting/Conversation.h"

#include <algorithm>

namespace fyn::productionrules {

namespace {

constexpr std::uint64_t kConversationStream = 1'000'000;
constexpr std::uint64_t kOverlapStream = 1'000'001;

/** Milliseconds. */
constexpr std::array<Quantile, 4> kTurnLength{{{0, 200}, {430, 1000}, {800, 6000}, {1000, 25000}}};
constexpr std::array<Quantile, 4> kPause{{{0, 100}, {600, 900}, {950, 3000}, {1000, 20000}}};

/** Of those who say something while another speaks. */
constexpr std::array<Quantile, 4> kRemark{{{0, 200}, {500, 700}, {900, 3000}, {1000, 8000}}};

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
  Random random(seed, kConversationStream);
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

void addOverlap(std::uint64_t seed, const std::vector<PersonPath>& paths, int percent,
                std::vector<SpeechTurn>& turns) {
  Random random(seed, kOverlapStream);
  std::vector<SpeechTurn> remarks;
  // Speech that goes undisturbed until the next remark, in proportion to the one before.
  std::int64_t undisturbed = random.between(0, 5000);
  for (const SpeechTurn& turn : turns) {
    std::int64_t t = turn.start;
    while (undisturbed < turn.end - t) {
      t += undisturbed;
      const std::int64_t length = std::min(draw(random, kRemark), turn.end - t);
      undisturbed = length * (100 - percent) / percent * random.between(50, 150) / 100;
      std::vector<std::size_t> others = peopleThere(paths, t);
      others.erase(std::remove(others.begin(), others.end(), static_cast<std::size_t>(turn.person - 1)),
                   others.end());
      if (!others.empty()) {
        remarks.push_back(
            {t, t + length, static_cast<std::int32_t>(others[random.below(others.size())]) + 1});
      }
      t += length;
    }
    undisturbed -= std::max<std::int64_t>(0, turn.end - t);
  }
  turns.insert(turns.end(), remarks.begin(), remarks.end());
}

}  // namespace fyn::productionrules
