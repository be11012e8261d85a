// Which stream follows whom: every rule as a scene, told by the pictures on screen.
#include <ostream>

#include "layouts/streams/MultiStreamFramingLayout.h"
#include "tests/layouts/EngineRun.h"

namespace fyn::productionrules {
namespace {

using testing::EngineRun;
using testing::peopleAt;
using testing::scene;

// Longer than every wait, also of who has walked.
constexpr std::uint64_t kSettled = 15000;

struct Step {
  /** Where persons are, as peopleAt reads it. */
  const char* people;
  std::uint64_t forMs;
  /** What is on screen at the end. */
  const char* pictures;
};

struct Rule {
  const char* name;
  std::vector<Step> steps;
};

void PrintTo(const Rule& rule, std::ostream* out) {
  *out << rule.name;
}

class MultiStreamRule : public ::testing::TestWithParam<Rule> {};

TEST_P(MultiStreamRule, ShowsThePictures) {
  EngineRun run;
  run.engine<MultiStreamFramingLayout>();
  for (const Step& step : GetParam().steps) {
    run.watch(peopleAt(step.people), step.forMs);
    EXPECT_EQ(run.streamPictures(), step.pictures) << step.people << " for " << step.forMs << " ms";
  }
}

INSTANTIATE_TEST_SUITE_P(
    Rules, MultiStreamRule,
    ::testing::Values(
        Rule{"EverybodyHasAStreamFromLeftToRight",
             {{"4@1100 5@200 6@650", 100, "1 HEAD [5], 2 HEAD [6], 3 HEAD [4]"}}},
        Rule{"NeighboursShareOne", {{"1@200 2@310 3@900", 100, "1 PROXIMITY [1 2], 2 HEAD [3], 3 GROUP"}}},
        Rule{"ANewcomerTakesTheStreamOfSomebodyWhoHasJustLeft",
             {{"1@200 2@700", 100, "1 HEAD [1], 2 HEAD [2], 3 GROUP"},
              {"2@700 3@210", kSettled, "1 HEAD [3], 2 HEAD [2], 3 GROUP"}}},
        Rule{"ANewcomerBetweenTwoJoinsTheLowerStream",
             {{"1@200 2@700", 100, "1 HEAD [1], 2 HEAD [2], 3 GROUP"},
              {"1@400 2@620 3@510", kSettled, "1 PROXIMITY [1 3], 2 HEAD [2], 3 GROUP"}}},
        Rule{"WhoeverStaysKeepsTheStreamOfTheUnit",
             {{"1@200 2@310 3@900", 100, "1 PROXIMITY [1 2], 2 HEAD [3], 3 GROUP"},
              {"2@310 3@900", kSettled, "1 HEAD [2], 2 HEAD [3], 3 GROUP"}}},
        Rule{"TheUnitsThatCameLastShareTheLastStream",
             {{"1@200 2@600 3@1000", 100, "1 HEAD [1], 2 HEAD [2], 3 HEAD [3]"},
              {"1@200 2@600 3@1000 4@400", kSettled, "1 HEAD [1], 2 HEAD [2], 3 PROXIMITY [3 4]"},
              {"1@200 2@600 3@1000 4@400 5@800,500", kSettled,
               "1 HEAD [1], 2 HEAD [2], 3 PROXIMITY [3 4 5]"}}},
        Rule{"SharingEndsWithTheUnitAndNotBefore",
             {{"1@200 2@600 3@800 4@1100", 100, "1 HEAD [1], 2 HEAD [2], 3 PROXIMITY [3 4]"},
              {"2@600 3@800 4@1100", kSettled, "1 GROUP, 2 HEAD [2], 3 PROXIMITY [3 4]"},
              {"2@600 4@1100", kSettled, "1 GROUP, 2 HEAD [2], 3 HEAD [4]"}}},
        Rule{"PassingAnotherMovesNobody",
             {{"1@200 2@1000", 100, "1 HEAD [1], 2 HEAD [2], 3 GROUP"},
              {"1@600 2@620", kSettled, "1 HEAD [1], 2 HEAD [2], 3 GROUP"},
              {"1@1000 2@200", kSettled, "1 HEAD [1], 2 HEAD [2], 3 GROUP"}}},
        Rule{"NeighboursWhoPartKeepTheirStream",
             {{"1@200 2@310", 100, "1 PROXIMITY [1 2], 2 GROUP, 3 GROUP"},
              {"1@200 2@1000", kSettled, "1 PROXIMITY [1 2], 2 GROUP, 3 GROUP"}}},
        Rule{"ADetectionMissedOnceMovesNobody",
             {{"1@200 2@700", 100, "1 HEAD [1], 2 HEAD [2], 3 GROUP"},
              {"2@700", kSettled, "1 GROUP, 2 HEAD [2], 3 GROUP"},
              {"", 100, "1 GROUP, 2 HEAD [2], 3 GROUP"},
              {"2@700", kSettled, "1 GROUP, 2 HEAD [2], 3 GROUP"}}},
        Rule{"WhoComesBackInTimeGetsTheStreamBackFromANewcomer",
             {{"1@200 2@700", 100, "1 HEAD [1], 2 HEAD [2], 3 GROUP"},
              {"2@700 3@1100", 500, "1 HEAD [1], 2 HEAD [2], 3 GROUP"},
              {"1@200 2@700 3@1100", kSettled, "1 HEAD [1], 2 HEAD [2], 3 HEAD [3]"}}},
        Rule{"WhoComesBackTooLateIsANewcomer",
             {{"1@200 2@700", 100, "1 HEAD [1], 2 HEAD [2], 3 GROUP"},
              {"2@700", 4000, "1 HEAD [1], 2 HEAD [2], 3 GROUP"},
              {"2@700 3@1100", kSettled, "1 HEAD [3], 2 HEAD [2], 3 GROUP"},
              {"1@200 2@700 3@1100", kSettled, "1 HEAD [3], 2 HEAD [2], 3 HEAD [1]"}}},
        Rule{"AWalkerIsShownByTheGroup",
             {{"1@200 2@1100", 500, "1 HEAD [1], 2 HEAD [2], 3 GROUP"},
              {"1@350 2@1100", 200, "1 HEAD [1], 2 HEAD [2], 3 GROUP"},
              {"1@500 2@1100", 200, "1 HEAD [1], 2 HEAD [2], 3 GROUP"},
              {"1@650 2@1100", 1500, "1 GROUP, 2 HEAD [2], 3 GROUP"},
              {"1@650 2@1100", kSettled, "1 HEAD [1], 2 HEAD [2], 3 GROUP"}}},
        Rule{"AFalseBoxChangesNothing",
             {{"1@200 2@700", 100, "1 HEAD [1], 2 HEAD [2], 3 GROUP"},
              {"1@200 2@700 3@1100", 400, "1 HEAD [1], 2 HEAD [2], 3 GROUP"},
              {"1@200 2@700", kSettled, "1 HEAD [1], 2 HEAD [2], 3 GROUP"}}}),
    [](const ::testing::TestParamInfo<Rule>& rule) { return rule.param.name; });

// A group frame names heads, and the stream must know its people all the same.
TEST(MultiStreamRule, ADetectionMissedOnceMovesNobodyWhoIsShownAsAGroup) {
  // No closer view can be made of a box as flat as this.
  const auto flat = [](std::int64_t headId) {
    return scene().person(1).headId(headId).box({100, 300, 1100, 310});
  };
  for (const std::int64_t headId : {std::int64_t{1}, std::int64_t{2}, std::int64_t{900000000000}}) {
    EngineRun run;
    run.engine<MultiStreamFramingLayout>();
    run.watch(flat(headId).person(2).at(200, 600), 1000);
    run.watch(flat(headId), kSettled);
    ASSERT_EQ(run.streamPictures(), "1 GROUP, 2 GROUP, 3 GROUP") << headId;
    run.see(scene());
    run.watch(flat(headId), kSettled);
    EXPECT_EQ(run.streamPictures(), "1 GROUP, 2 GROUP, 3 GROUP") << headId;
  }
}

TEST(MultiStreamRule, WhoComesBackMovesOnlyThoseWhoCameSince) {
  EngineRun run;
  run.with([](PrConfig& config) { config.presenceEnabled = false; }).engine<MultiStreamFramingLayout>();
  run.layouts().setMaxLayouts(2);
  run.watch(peopleAt("1@200 2@700"), 1000);
  // Person 3 shares the last stream and waits to be shown there, while stream 1 becomes free.
  run.watch(peopleAt("1@200 2@700 3@1100"), 500);
  run.watch(peopleAt("2@700 3@1100"), 1400);
  ASSERT_EQ(run.streamPictures(), "1 GROUP, 2 HEAD [2]");
  run.see(peopleAt("3@1100"));
  run.watch(peopleAt("2@700 3@1100"), kSettled);
  EXPECT_EQ(run.streamPictures(), "1 GROUP, 2 PROXIMITY [2 3]");
}

// ---- The number of streams and their ids ----

struct IdRow {
  std::vector<unsigned> given;
  unsigned count;
  const char* pictures;
};

TEST(MultiStreamCount, Ids) {
  const IdRow rows[] = {
      {{}, 2, "1 HEAD [1], 2 GROUP"},
      {{7, 5}, 2, "7 HEAD [1], 5 GROUP"},
      {{7, 5}, 1, "7 HEAD [1]"},
      {{2}, 3, "2 HEAD [1], 1 GROUP, 3 GROUP"},
      {{4, 4, 0, 9}, 3, "4 HEAD [1], 9 GROUP, 1 GROUP"},
  };
  for (const IdRow& row : rows) {
    EngineRun run;
    run.engine<MultiStreamFramingLayout>();
    run.layouts().setDisplayLayoutStreamIDS(row.given);
    run.layouts().setMaxLayouts(row.count);
    run.see(peopleAt("1@600"));
    EXPECT_EQ(run.streamPictures(), row.pictures);
  }
}

TEST(MultiStreamCount, TheConfigurationGivesTheNumber) {
  const std::pair<int, std::size_t> rows[] = {{3, 4}, {0, 1}, {-5, 1}, {16, 17}, {2000000000, 65}};
  for (const auto& [configured, layouts] : rows) {
    EngineRun run;
    run.with([count = configured](PrConfig& config) { config.maxStreams = count; })
        .engine<MultiStreamFramingLayout>()
        .see(scene());
    EXPECT_EQ(run.layouts().getFinalLayoutPtrs().size(), layouts) << configured;
  }
}

// ---- Reasons ----

// The mode asks no further once a stream has a new picture; the waits of the others begin all the same.
TEST(MultiStreamReasons, WaitsBeginInTheResultInWhichAnotherStreamAdopts) {
  EngineRun run;
  run.with([](PrConfig& config) {
       config.timersPFLayoutChangeGf2Other = 0;
       config.presenceEnabled = false;
     })
      .engine<MultiStreamFramingLayout>()
      .watch(peopleAt("1@500 2@700"), 1000);
  run.decisions.clear();
  EXPECT_TRUE(run.see(peopleAt("1@100 2@700 3@1200")));
  std::vector<std::string> seen;
  for (const LayoutDecision& decision : run.decisions) {
    if (decision.kind != DecisionKind::Pending) {
      seen.push_back(std::to_string(decision.streamId) + " " + decisionKindText(decision.kind));
    }
  }
  const std::vector<std::string> expected = {"3 adopted", "0 reframeWait", "1 reframeWait"};
  EXPECT_EQ(seen, expected);
}

// ---- Candidates ----

TEST(MultiStreamCandidates, EverybodyAloneWhileNeighboursAreOff) {
  EngineRun run;
  run.with([](PrConfig& config) { config.newPfFeatureEnabled = false; })
      .engine<MultiStreamFramingLayout>()
      .see(peopleAt("1@200 2@310"));
  EXPECT_EQ(run.streamPictures(), "1 HEAD [1], 2 HEAD [2], 3 GROUP");
}

TEST(MultiStreamCandidates, FramesAreCountedAndFillTheOutput) {
  EngineRun run;
  run.engine<MultiStreamFramingLayout>().see(peopleAt("1@100 2@500 3@610 4@900 5@1000 6@1100 7@1210"));
  const auto layouts = run.layouts().getFinalLayoutPtrs();
  ASSERT_EQ(layouts.size(), 4U);
  const auto counters = [&](std::size_t stream) {
    const Layout& layout = *layouts[stream];
    return std::vector<int>{layout.headFrameCount, layout.proximityFrameCount,
                            layout.largeProximityFrameCount, layout.faceCount,
                            layout.frames.front().frameLayout};
  };
  EXPECT_EQ(counters(1), (std::vector<int>{1, 0, 0, 1, kFrameLayoutHeadSingle}));
  EXPECT_EQ(counters(2), (std::vector<int>{0, 1, 0, 2, kFrameLayoutProximitySingleWide}));
  EXPECT_EQ(counters(3), (std::vector<int>{0, 0, 1, 4, kFrameLayoutProximitySingleWide}));
  for (const auto& layout : layouts) {
    ASSERT_EQ(layout->frames.size(), 1U);
    EXPECT_EQ(layout->frames.front().dest, (Rect{0, 0, 1280, 720}));
    EXPECT_EQ(layout->isLogicalStream, layout->streamId == 0);
  }
}

}  // namespace
}  // namespace fyn::productionrules
