#include <gtest/gtest.h>

#include <algorithm>

#include "config/PrConfig.h"
#include "layouts/people/PeoplePresence.h"
#include "tests/testing/SceneBuilder.h"
#include "tests/testing/TestEnvironment.h"

namespace fyn::productionrules::testing {
namespace {

bool isThere(const MLData& data, std::int32_t person) {
  const auto& heads = data.getHeads();
  return std::any_of(heads.begin(), heads.end(), [&](const auto& head) { return head->id == person; });
}

/** Persons 1 and 2 by results: X where the person is seen, and then where the person counts. */
struct PresenceCase {
  const char* name;
  std::uint32_t stepMs;
  std::string seen[2];
  std::string counts[2];
  std::int32_t x = 640;
};

const PresenceCase kPresenceCases[] = {
    {"the first result counts at once", 100, {"XXXX", "...."}, {"XXXX", "...."}},
    {"a newcomer counts after 500 ms", 100, {"XXXXXXXX", ".XXXXXXX"}, {"XXXXXXXX", "......XX"}},
    {"gaps in two of five results do not matter", 100, {"XXXXXXXX", ".XX.X.XX"}, {"XXXXXXXX", "......XX"}},
    {"more gaps do", 100, {"XXXXXXXXXX", ".X..X..X.X"}, {"XXXXXXXXXX", ".........."}},
    {"a box that flashes up is forgotten", 100, {"XXXXXXXXX", ".X....XXX"}, {"XXXXXXXXX", "........."}},
    {"who was there first is kept for 3 s", 500, {"X.........", "XXXXXXXXXX"}, {"XXXXXXX...", "XXXXXXXXXX"}},
    {"who came later for a third of the time",
     500,
     {"XXXXXXXXXX", ".XXXXX...."},
     {"XXXXXXXXXX", "..XXXXX..."}},
    {"a room that empties is empty in the end",
     500,
     {"XX.........", "X.........."},
     {"XXXXXXXX...", "XXXXXXX...."}},
    {"who stands at the border leaves soon", 100, {"XX......", "XX......"}, {"XXXXX...", "XXXXXXXX"}, 90},
};

TEST(PeoplePresence, BridgesWhatADetectorMissesAndPassesOverWhatFlashesUp) {
  TestEnvironment environment;
  for (const PresenceCase& each : kPresenceCases) {
    // The second clock wraps on the way.
    for (const std::uint32_t start : {1000U, 0U - 250U}) {
      PeoplePresence presence;
      std::string counts[2];
      for (std::size_t i = 0; i < each.seen[0].size(); ++i) {
        Scene scene;
        for (const std::int32_t person : {1, 2}) {
          if (each.seen[person - 1][i] == 'X') {
            scene.person(person).at(person == 1 ? each.x : 900, 360);
          }
        }
        const auto now = start + static_cast<std::uint32_t>(i) * each.stepMs;
        const std::shared_ptr<MLData> present = presence.update(scene.mlData(), now);
        for (const std::int32_t person : {1, 2}) {
          counts[person - 1] += isThere(*present, person) ? 'X' : '.';
        }
      }
      EXPECT_EQ(counts[0], each.counts[0]) << each.name << ", from " << start;
      EXPECT_EQ(counts[1], each.counts[1]) << each.name << ", from " << start;
    }
  }
}

/** A person whose head is where `place` says, seen every 100 ms. */
struct WalkCase {
  const char* name;
  Scene (*place)(std::int32_t step);
  bool walks;
};

const WalkCase kWalkCases[] = {
    {"sits still", [](std::int32_t step) { return scene().person(1).at(600 + step % 2, 360); }, false},
    {"leans over by a head",
     [](std::int32_t step) { return scene().person(1).at(step < 10 ? 600 : 700, 360); }, false},
    {"crosses the room", [](std::int32_t step) { return scene().person(1).at(200 + 30 * step, 360); }, true},
    {"comes nearer",
     [](std::int32_t step) { return scene().person(1).sized(100 + 3 * step, 120 + 4 * step).at(600, 360); },
     true},
};

TEST(PeoplePresence, TellsAWalkFromAShiftInAChair) {
  TestEnvironment environment;
  for (const WalkCase& each : kWalkCases) {
    PeoplePresence presence;
    std::uint32_t now = 0;
    for (std::int32_t step = 0; step < 20; ++step) {
      presence.update(each.place(step).mlData(), now += 100);
    }
    EXPECT_EQ(presence.hasWalked(1, 0, now), each.walks) << each.name;
  }
}

TEST(PeoplePresence, AWalkerIsMissedForASecondAndHasAVelocity) {
  TestEnvironment environment;
  PeoplePresence presence;
  std::uint32_t now = 0;
  for (std::int32_t step = 0; step < 20; ++step) {
    presence.update(scene().person(1).at(200 + 30 * step, 500 - 10 * step).mlData(), now += 100);
  }
  EXPECT_NEAR(presence.velocity(1, 0).x, 300, 1);
  EXPECT_NEAR(presence.velocity(1, 0).y, -100, 1);
  EXPECT_TRUE(isThere(*presence.update(scene().mlData(), now + 1000), 1));
  EXPECT_FALSE(isThere(*presence.update(scene().mlData(), now + 1100), 1));
}

TEST(PeoplePresence, ANewNumberAtTheSamePlaceIsTheSamePerson) {
  TestEnvironment environment;
  PeoplePresence presence;
  presence.update(scene().person(1).at(300, 360).person(2).at(900, 360).mlData(), 0);
  const auto present = presence.update(scene().person(2).at(900, 360).person(7).at(330, 360).mlData(), 100);
  EXPECT_TRUE(isThere(*present, 7));
  EXPECT_FALSE(isThere(*present, 1));
  ASSERT_EQ(presence.renamed().size(), 1U);
  EXPECT_EQ(presence.renamed()[0].before->id, 1);
  EXPECT_EQ(presence.renamed()[0].now->id, 7);
  // Somebody who is still seen keeps the number, and whoever comes elsewhere is another.
  presence.update(scene().person(2).at(900, 360).person(8).at(910, 360).person(9).at(600, 360).mlData(), 200);
  EXPECT_TRUE(presence.renamed().empty());
  // Also when the next result misses that person.
  presence.update(scene().person(8).at(910, 360).mlData(), 300);
  EXPECT_TRUE(presence.renamed().empty());
}

TEST(PeoplePresence, WhoComesBackUnderTheOldNumberWasNotSomebodyElse) {
  TestEnvironment environment;
  for (const bool isOtherSeen : {true, false}) {
    PeoplePresence presence;
    presence.update(scene().person(1).at(300, 360).mlData(), 0);
    presence.update(scene().person(7).at(340, 360).mlData(), 100);
    Scene both = scene().person(1).at(300, 360);
    const auto present = presence.update((isOtherSeen ? both.person(7).at(340, 360) : both).mlData(), 200);
    EXPECT_TRUE(isThere(*present, 1));
    EXPECT_FALSE(isThere(*present, 7));
    ASSERT_EQ(presence.renamed().size(), 1U);
    EXPECT_EQ(presence.renamed()[0].now->id, 1);
    // A number that is used again, elsewhere, is nobody who comes back.
    presence.update(scene().person(8).at(300, 360).mlData(), 300);
    EXPECT_TRUE(
        isThere(*presence.update(scene().person(8).at(300, 360).person(1).at(900, 360).mlData(), 400), 8));
  }
}

// Given up after 3 s, which is forgotten after a minute.
TEST(PeoplePresence, WhoComesBackAtThePlaceIsTheSamePersonToAPictureThatStillShowsIt) {
  TestEnvironment environment;
  PrConfig config;
  config.steadyFramingEnabled = true;
  PrConfig::set(config);
  for (const std::uint32_t awayMs : {3500U, 70000U}) {
    PeoplePresence presence;
    const auto alone = scene().person(2).at(900, 360).mlData();
    presence.update(scene().person(1).at(300, 360).person(2).at(900, 360).mlData(), 0);
    for (std::uint32_t now = 100; now < awayMs; now += 100) {
      presence.update(alone, now);
    }
    const auto present =
        presence.update(scene().person(2).at(900, 360).person(7).at(310, 360).mlData(), awayMs);
    const bool isKnown = awayMs < 60000;
    EXPECT_EQ(isThere(*present, 7), isKnown);
    ASSERT_EQ(presence.renamed().size(), isKnown ? 1U : 0U);
    if (isKnown) {
      EXPECT_EQ(presence.renamed()[0].before->id, 1);
    }
  }
}

TEST(PeoplePresence, WhoIsMissedKeepsTheLastBoxAndForgettingEndsThat) {
  TestEnvironment environment;
  PeoplePresence presence;
  presence.update(scene().person(1).at(300, 360).person(2).at(900, 360).mlData(), 0);
  presence.update(scene().person(2).at(910, 360).person(1).at(310, 360).person(1).at(700, 360).mlData(), 100);
  const auto present = presence.update(scene().person(2).at(920, 360).mlData(), 200);
  ASSERT_EQ(present->getHeads().size(), 2U);
  EXPECT_EQ(present->getHeads()[0]->findHead(0)->bbox.left, 870);
  EXPECT_EQ(present->getHeads()[1]->findHead(0)->bbox.left, 260);
  presence.forget();
  EXPECT_EQ(presence.update(scene().person(3).at(500, 360).mlData(), 300)->getHeads().size(), 1U);
}

TEST(HeadPath, RestsInTheMiddleOfASwayAndMovesOnWithThePerson) {
  HeadPath path;
  const auto add = [&path](std::uint32_t now, std::int32_t left) {
    path.add(now, {left, 300, left + 80, 400}, true);
    return path.resting().left;
  };
  EXPECT_EQ(add(0, 100), 100);
  for (std::uint32_t now = 500; now <= 20000; now += 500) {
    EXPECT_NEAR(add(now, now % 1000 != 0 ? 140 : 100), 120, now < 2000 ? 20 : 5) << now;
  }
  EXPECT_NEAR(add(40000, 160), 160, 1) << "missed for long";
  EXPECT_EQ(add(40500, 250), 250) << "on another seat";
}

}  // namespace
}  // namespace fyn::productionrules::testing
