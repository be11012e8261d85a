#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "layouts/people/SplitPersons.h"
#include "model/FynCamerasConfig.h"
#include "tests/testing/SceneBuilder.h"
#include "tests/testing/TestEnvironment.h"

namespace fyn::productionrules::testing {
namespace {

/** Persons with the cameras that have a head of them, such as "1@01 2@0". */
std::string textOf(const MLData& data) {
  std::string text;
  for (const std::shared_ptr<FynHead>& person : data.getHeads()) {
    text += (text.empty() ? "" : " ") + std::to_string(person->id) + "@";
    for (const std::uint32_t camId : {0U, 1U}) {
      text += person->findHead(camId) != nullptr ? std::to_string(camId) : "";
    }
  }
  return text;
}

Scene onePlus(std::int32_t id, std::int32_t camId, std::int32_t x, std::int32_t height = 120) {
  return scene().person(1).camera(1).at(500, 360).person(id).camera(camId).sized(100, height).at(x, 360);
}

Scene both(std::int32_t xInCamera0 = 300) {
  return scene().person(1).at(xInCamera0, 360).camera(1).at(500, 360);
}

struct SplitCase {
  const char* name;
  /** What is seen after person 1 in both cameras, each so long after the one before, in milliseconds. */
  std::vector<std::pair<std::uint32_t, Scene>> seen;
  std::string persons;
  std::size_t renamed;
};

const SplitCase kSplitCases[] = {
    {"one camera has another number", {{100, onePlus(7, 0, 310)}}, "1@01", 1},
    {"and goes on with it", {{100, onePlus(7, 0, 310)}, {100, onePlus(7, 0, 600)}}, "1@01", 0},
    {"then the other has, too",
     {{100, onePlus(7, 0, 310)}, {100, scene().person(8).camera(1).at(505, 360).person(7).at(310, 360)}},
     "1@01",
     1},
    {"the old number comes back instead", {{100, onePlus(7, 0, 310)}, {100, both(310)}}, "1@01", 1},
    {"the old number comes back beside it",
     {{100, onePlus(7, 0, 310)}, {100, both().person(7).at(330, 360)}},
     "1@01 7@0",
     1},
    {"somebody comes elsewhere", {{100, onePlus(7, 0, 600)}}, "1@01 7@0", 0},
    {"a box of another size", {{100, onePlus(7, 0, 310, 80)}}, "1@01 7@0", 0},
    {"the place is forgotten", {{5000, onePlus(1, 1, 500)}, {6000, onePlus(7, 0, 310)}}, "1@1 7@0", 0},
    {"one camera misses the head", {{2900, scene().person(1).camera(1).at(500, 360)}}, "1@01", 0},
    {"for long", {{2900, onePlus(2, 1, 900)}, {200, onePlus(2, 1, 900)}}, "1@1 2@1", 0},
    {"all miss it", {{100, scene().person(2).camera(1).at(900, 360)}}, "2@1", 0},
};

TEST(SplitPersons, HasEachPersonOnce) {
  TestEnvironment environment;
  for (const SplitCase& each : kSplitCases) {
    SplitPersons persons;
    std::uint32_t now = 0U - 150U;
    std::vector<PersonRenamed> renamed;
    std::shared_ptr<MLData> whole = persons.rejoin(both().mlData(), now, renamed);
    for (const auto& [ms, scene] : each.seen) {
      renamed.clear();
      whole = persons.rejoin(scene.mlData(), now += ms, renamed);
    }
    EXPECT_EQ(textOf(*whole), each.persons) << each.name;
    EXPECT_EQ(renamed.size(), each.renamed) << each.name;
  }
}

TEST(SplitPersons, ForgetsANumberThatHasNotComeBackForAMinute) {
  TestEnvironment environment;
  for (const std::uint32_t awayMs : {58000U, 62000U}) {
    SplitPersons persons;
    std::vector<PersonRenamed> renamed;
    persons.rejoin(both().mlData(), 0, renamed);
    persons.rejoin(onePlus(7, 0, 310).mlData(), 1000, renamed);
    for (std::uint32_t ms = 1000; ms < awayMs; ms += 1000) {
      persons.rejoin(scene().person(1).camera(1).at(500, 360).mlData(), 1000 + ms, renamed);
    }
    const auto whole = persons.rejoin(onePlus(7, 0, 900).mlData(), 1000 + awayMs, renamed);
    EXPECT_EQ(textOf(*whole), awayMs < 60000 ? "1@01" : "1@1 7@0");
  }
}

TEST(SplitPersons, HoldsAHeadWithoutItsTagAndLeavesOneCameraAlone) {
  TestEnvironment environment;
  SplitPersons persons;
  std::vector<PersonRenamed> renamed;
  const auto alone = scene().person(1).at(300, 360).person(2).at(900, 360).mlData();
  EXPECT_EQ(persons.rejoin(alone, 0, renamed), alone);
  persons.rejoin(scene().person(1).at(300, 360).speaking().camera(1).at(40, 360).mlData(), 100, renamed);
  const auto held = persons.rejoin(scene().person(1).camera(1).at(40, 360).mlData(), 200, renamed);
  ASSERT_NE(held->getHeads().front()->findHead(0), nullptr);
  EXPECT_FALSE(held->getHeads().front()->findHead(0)->isSpeaker);
  EXPECT_EQ(held->getHeads().front()->findHead(0)->bbox.left, 250);
  // Whoever stands at the border has left through it.
  const auto seen = scene().person(1).at(300, 360);
  persons.rejoin(seen.mlData(), 300, renamed);
  EXPECT_EQ(textOf(*persons.rejoin(seen.mlData(), 700, renamed)), "1@0");
}

}  // namespace
}  // namespace fyn::productionrules::testing
