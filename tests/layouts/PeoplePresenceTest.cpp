#include <gtest/gtest.h>

#include <algorithm>

#include "layouts/people/PeoplePresence.h"
#include "tests/testing/SceneBuilder.h"

namespace fyn::productionrules::testing {
namespace {

constexpr std::uint32_t kStepMs = 100;
constexpr std::uint32_t kHoldMs = 300;

/** Persons 1 and 2 by results: X where the person is seen, and then where the person counts. */
struct PresenceCase {
  const char* name;
  std::string seen[2];
  std::string counts[2];
};

const PresenceCase kPresenceCases[] = {
    {"the first result counts at once", {"XXXX", "...."}, {"XXXX", "...."}},
    {"a newcomer counts after the time", {"XXXXXX", ".XXXXX"}, {"XXXXXX", "....XX"}},
    {"gaps do not matter to a newcomer", {"XXXXXXXX", ".X.X..XX"}, {"XXXXXXXX", "......XX"}},
    {"a box that flashes up never counts", {"XXXXXXX", ".X.X..."}, {"XXXXXXX", "......."}},
    {"who is missed for the time counts on", {"XX...XXX", "X..X..XX"}, {"XXXXXXXX", "XXXXXXXX"}},
    {"who is missed for longer is new", {"XX....XXXX", "XXXXXXXXXX"}, {"XXXXX....X", "XXXXXXXXXX"}},
    {"a room that empties is empty after the time", {"XX......", "X......."}, {"XXXXX...", "XXXX...."}},
};

/** The counting persons of each result, as the cases write them. */
std::vector<std::string> countsOf(const PresenceCase& each, std::uint32_t start) {
  PeoplePresence presence;
  std::vector<std::string> counts(2);
  for (std::size_t i = 0; i < each.seen[0].size(); ++i) {
    Scene scene;
    for (const std::int32_t person : {1, 2}) {
      if (each.seen[person - 1][i] == 'X') {
        scene.person(person).at(300 * person, 360);
      }
    }
    const std::uint32_t now = start + static_cast<std::uint32_t>(i) * kStepMs;
    const std::shared_ptr<MLData> steady = presence.steady(*scene.mlData(), now, kHoldMs);
    for (const std::int32_t person : {1, 2}) {
      const auto& heads = steady->getHeads();
      const bool there =
          std::any_of(heads.begin(), heads.end(), [&](const auto& head) { return head->id == person; });
      counts[static_cast<std::size_t>(person - 1)] += there ? 'X' : '.';
    }
  }
  return counts;
}

TEST(PeoplePresence, BridgesWhatADetectorMissesAndPassesOverWhatFlashesUp) {
  for (const PresenceCase& each : kPresenceCases) {
    // The second clock wraps on the way.
    for (const std::uint32_t start : {1000U, 0U - 250U}) {
      const std::vector<std::string> counts = countsOf(each, start);
      EXPECT_EQ(counts[0], each.counts[0]) << each.name << ", from " << start;
      EXPECT_EQ(counts[1], each.counts[1]) << each.name << ", from " << start;
    }
  }
}

TEST(PeoplePresence, WhoIsMissedKeepsTheLastBoxAndForgettingEndsThat) {
  PeoplePresence presence;
  presence.steady(*scene().person(1).at(300, 360).person(2).at(900, 360).mlData(), 0, kHoldMs);
  presence.steady(*scene().person(2).at(910, 360).person(1).at(310, 360).person(1).at(700, 360).mlData(), 100,
                  kHoldMs);
  const auto steady = presence.steady(*scene().person(2).at(920, 360).mlData(), 200, kHoldMs);
  ASSERT_EQ(steady->getHeads().size(), 2U);
  EXPECT_EQ(steady->getHeads()[0]->findHead(0)->bbox.left, 870);
  EXPECT_EQ(steady->getHeads()[1]->findHead(0)->bbox.left, 260);
  presence.forget();
  EXPECT_EQ(presence.steady(*scene().person(3).at(500, 360).mlData(), 300, kHoldMs)->getHeads().size(), 1U);
}

}  // namespace
}  // namespace fyn::productionrules::testing
