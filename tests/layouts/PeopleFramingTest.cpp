#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

#include "config/ConfigKeys.h"
#include "layouts/people/PeopleFramingLayout.h"
#include "layouts/people/PrimaryPeopleLayout.h"
#include "tests/layouts/EngineRun.h"

namespace fyn::productionrules::testing {
namespace {

/** Two heads of 100 x 120 pixels; they join below 150 pixels and part from 200. */
Scene pairAt(std::int32_t distance) {
  return scene().person(1).at(400, 360).person(2).at(400 + distance, 360);
}

Scene rowOf(std::int32_t people, std::int32_t distance, std::int64_t firstHead = 1) {
  Scene scene;
  for (std::int32_t i = 0; i < people; ++i) {
    scene.person(i + 1).headId(firstHead + i).sized(40, 50).at(60 + i * distance, 360);
  }
  return scene;
}

struct VisitCase {
  const char* what;
  Scene before;
  Scene during;
};

// Whoever sits between the two distances is neither joined nor parted by somebody who is gone again.
TEST(PeopleFraming, AVisitorWhoGoesInTimeJoinsNobody) {
  const VisitCase cases[] = {
      {"one too many", rowOf(6, 70), rowOf(7, 70)},
      {"between two", pairAt(190), pairAt(190).person(3).at(495, 360)},
      {"beside two", pairAt(140), pairAt(140).person(3).at(680, 360)},
      {"a crowd", pairAt(190), peopleAt("1@400,360 2@590,360 3@60 4@160 5@800 6@900 7@1000 8@1100 9@1200")},
  };
  for (const VisitCase& each : cases) {
    EngineRun run;
    run.engine<PeopleFramingLayout>();
    run.watch(each.before, 1000);
    run.watch(each.during, 1000);
    run.watch(each.before, 20000);
    EXPECT_EQ(run.takePictures().size(), 1U) << each.what << ": " << run.picture();
  }
}

TEST(PeopleFraming, ALargeClusterIsAGroupUntilNoTileWouldShowANeighbour) {
  EngineRun run;
  run.engine<PeopleFramingLayout>();
  run.see(rowOf(4, 59));
  EXPECT_EQ(run.picture().substr(0, 5), "GROUP");
  run.watch(rowOf(4, 170), 20000);
  EXPECT_EQ(run.picture().substr(0, 5), "GROUP");
  run.watch(rowOf(4, 220), 15000);
  EXPECT_EQ(run.picture(), "HEAD [1] [2] [3] [4]");
}

// A group frame names heads: who shares it must not depend on how heads are numbered, nor on who has come
// since.
TEST(PeopleFraming, AGroupKeepsTogetherWhomItShows) {
  EngineRun run;
  run.engine<PeopleFramingLayout>();
  run.see(rowOf(4, 59, 100));
  run.watch(rowOf(5, 70, 100), 20000);
  EXPECT_EQ(run.picture().substr(0, 5), "GROUP");
}

/** Changes of the layout and the wait that holds each back; the times are one per field of the setting. */
struct WaitCase {
  const char* name;
  Scene from;
  Scene to;
  const char* timer;
  std::uint32_t waitMs;
};

/** The decision to hold the second scene back. */
LayoutDecision pendingOf(const WaitCase& each, const std::function<void(PrConfig&)>& change) {
  EngineRun run;
  run.with(change).engine<PeopleFramingLayout>();
  run.see(each.from);
  run.decisions.clear();
  run.see(each.to);
  return run.decisions.at(0);
}

TEST(PeopleFraming, EveryChangeHasItsWait) {
  const Scene nobody = scene();
  const Scene one = scene().person(1).at(640, 360);
  const Scene two = pairAt(400);
  const Scene twoSwapped = peopleAt("2@400,360 1@800,360");
  const Scene pair = pairAt(120);
  const Scene pairAndOne = peopleAt("1@400,360 2@520,360 3@900,360");
  const Scene crowd = rowOf(7, 150);
  const WaitCase cases[] = {
      {"room to head", nobody, one, "roomToHeadLayoutChangeTimer", 4000},
      {"room to proximity", nobody, pair, "roomToHeadLayoutChangeTimer", 4000},
      {"room to group", nobody, crowd, "roomToOtherLayoutChangeTimer", 4000},
      {"head to head, one more", one, two, "headCountLayoutChangeTimer", 4000},
      {"head to head, one less", two, one, "headCountLayoutChangeTimer", 1200},
      {"head to head, other places", two, twoSwapped, "headPosLayoutChangeTimer", 8000},
      {"head to proximity", two, pair, "headToOtherLayoutChangeTimer", 4000},
      {"head to room", one, nobody, "headToOtherLayoutChangeTimer", 1200},
      {"proximity to proximity", pair, pairAndOne, "proxToProxLayoutChangeTimer", 4000},
      {"proximity to head", pair, two, "proxToHeadLayoutChangeTimer", 8000},
      {"proximity to room", pair, nobody, "proxToGFLayoutChangeTimer", 1200},
      {"group to proximity", crowd, pair, "gfToOtherLayoutChangeTimer", 5200},
  };
  for (const WaitCase& each : cases) {
    const LayoutDecision pending = pendingOf(each, [](PrConfig&) {});
    EXPECT_EQ(decisionKindText(pending.kind), std::string("pending")) << each.name;
    EXPECT_EQ(pending.timer, each.timer) << each.name;
    EXPECT_EQ(pending.waitMs, each.waitMs) << each.name;
    const LayoutDecision tuned = pendingOf(
        each, [&](PrConfig& config) { setConfigValue(config, *findConfigKey(pending.key), 77000); });
    EXPECT_EQ(tuned.configuredMs, 77000U) << pending.key << " sets it";
  }
}

TEST(PeopleFraming, AWaitThatBecomesNegativeIsReportedAndIsNone) {
  EngineRun run;
  run.with([](PrConfig& config) { config.timersLayoutChangeHeadCountChange = 2000; })
      .engine<PeopleFramingLayout>();
  run.see(rowOf(3, 400));
  run.environment.log.take();
  EXPECT_TRUE(run.see(rowOf(2, 400)));
  const std::vector<std::string> lines = run.environment.log.take();
  EXPECT_NE(std::find(lines.begin(), lines.end(),
                      "E|PeopleFramingLayout|Invalid wait time for layout change, wt: -800"),
            lines.end());
}

TEST(PeopleFraming, TransitionsDissolveBetweenTilesAndGroupOnly) {
  struct Case {
    Scene from;
    Scene to;
    bool cutOnly;
    const char* animation;
  };
  const Case cases[] = {
      {pairAt(400), rowOf(7, 150), false, "dissolve"},
      {rowOf(7, 150), pairAt(400), false, "dissolve"},
      {pairAt(400), rowOf(7, 150), true, "cut"},
      {pairAt(400), pairAt(100), false, "cut"},
      {scene(), pairAt(400), false, "cut"},
  };
  for (const Case& each : cases) {
    EngineRun run;
    run.with([&](PrConfig& config) { config.pfAnimationCutOnly = each.cutOnly; })
        .engine<PeopleFramingLayout>();
    run.see(each.from);
    run.watch(each.to, 10000);
    EXPECT_EQ(run.current().animation, each.animation);
    EXPECT_EQ(run.current().duration,
              static_cast<std::int32_t>(run.layouts().getLayoutChangeDuration(each.animation)));
  }
}

struct PictureCase {
  const char* what;
  std::function<void(PrConfig&)> change;
  const char* people;
  const char* picture;
};

TEST(PeopleFraming, PicturesOfPeopleWhoSitStill) {
  const auto asItIs = [](PrConfig&) {};
  const char* const wide = "1@80,360 2@500,360 3@640,360 4@780,360 5@1200,360";
  const PictureCase cases[] = {
      {"of two one above the other the lower comes first", asItIs, "1@300,70 2@300,650 3@900",
       "HEAD [2] [1] [3]"},
      {"without the feature everybody is alone", [](PrConfig& config) { config.newPfFeatureEnabled = false; },
       "1@300 2@410 3@900", "HEAD [1] [2] [3]"},
      {"the square holds neighbours", asItIs, wide, "PROXIMITY [1] [2 3 4] [5]"},
      {"without it their wide box would be cut",
       [](PrConfig& config) { config.proximitySquareFeature = false; }, wide, "GROUP [1 2 3 4 5]"},
  };
  for (const PictureCase& each : cases) {
    EngineRun run;
    run.with(each.change).engine<PeopleFramingLayout>();
    run.see(peopleAt(each.people));
    EXPECT_EQ(run.picture(), each.picture) << each.what;
  }
}

TEST(PeopleFraming, ReframesEaseWhereTheyAreAllowedTo) {
  EngineRun run;
  run.with([](PrConfig& config) { config.animationEnableEase = true; }).engine<PeopleFramingLayout>();
  run.see(pairAt(500));
  // Out of its tile's centre, over its edge, out of it: the last is a cut.
  const Rect view = run.current().frames[0].source;
  run.watch(scene().person(1).at(view.right - 10, 360).person(2).at(900, 360), 2200);
  EXPECT_EQ(run.current().animation, "ease");
  EXPECT_EQ(run.decisions.back().kind, DecisionKind::Reframed);
  run.watch(scene().person(1).at(60, 360).person(2).at(900, 360), 2200);
  EXPECT_EQ(run.current().animation, "cut");
}

TEST(PeopleFraming, SteadilyOtherMovesAreEasedTooUnlessOnlyCutsAreAllowed) {
  for (const bool cutsOnly : {false, true}) {
    EngineRun run;
    run.with([&](PrConfig& config) {
      config.steadyFramingEnabled = config.animationEnableEase = true;
      config.pfAnimationCutOnly = cutsOnly;
    });
    const char* const expected = cutsOnly ? "cut" : "ease";
    EXPECT_EQ(PeopleFramingLayout().getReframeAnimation(HeadPosition::GROUP_HEAD_OUTSIDE), expected);
    EXPECT_EQ(PrimaryPeopleLayout().getReframeAnimation(HeadPosition::HEAD_OUTSIDE), expected);
  }
}

}  // namespace
}  // namespace fyn::productionrules::testing
