#include <gtest/gtest.h>

#include "geometry/RectMath.h"
#include "geometry/RuleOfThirds.h"
#include "layouts/people/PeopleFramingLayout.h"
#include "layouts/people/PeopleTiles.h"
#include "layouts/people/TileView.h"
#include "tests/layouts/EngineRun.h"

namespace fyn::productionrules::testing {
namespace {

/** A row of units across the picture: H one person, P two neighbours, T three and L four of them. Ids count
 * from 1. */
Scene unitsInARow(const std::string& units) {
  Scene scene;
  std::int32_t id = 0;
  const std::int32_t pitch = 1280 / static_cast<std::int32_t>(units.size());
  for (std::size_t i = 0; i < units.size(); ++i) {
    const std::int32_t centre = pitch * static_cast<std::int32_t>(i) + pitch / 2;
    const auto people = static_cast<std::int32_t>(std::string_view("HPTL").find(units[i])) + 1;
    for (std::int32_t k = 0; k < people; ++k) {
      scene.person(++id).sized(24, 30).at(centre + 28 * k - 14 * (people - 1), 360);
    }
  }
  return scene;
}

TEST(PeopleTiles, AllSequencesOfUnitsCoverTheOutputExactly) {
  for (std::size_t count = 1; count <= kMaxTiles; ++count) {
    for (unsigned kinds = 0; kinds < 1U << count; ++kinds) {
      Layout layout;
      for (std::size_t i = 0; i < count; ++i) {
        layout.frames.emplace_back().frameType =
            (kinds >> i & 1U) != 0 ? FramingType::PROXIMITY : FramingType::HEAD;
      }
      placeInTiles(layout);
      std::int64_t covered = 0;
      for (std::size_t i = 0; i < count; ++i) {
        const Rect& a = layout.frames[i].dest;
        ASSERT_TRUE(a.left >= 0 && a.top >= 0 && a.right <= 1280 && a.bottom <= 720);
        ASSERT_TRUE(a.left < a.right && a.top < a.bottom);
        ASSERT_NE(layout.frames[i].frameLayout, kFrameLayoutNone);
        covered += std::int64_t{a.right - a.left} * (a.bottom - a.top);
        for (std::size_t k = 0; k < i; ++k) {
          const Rect& b = layout.frames[k].dest;
          ASSERT_FALSE(a.left < b.right && b.left < a.right && a.top < b.bottom && b.top < a.bottom)
              << count << " units, kinds " << kinds << ", tiles " << k << " and " << i;
        }
      }
      ASSERT_EQ(covered, 1280 * 720) << count << " units, kinds " << kinds;
    }
  }
}

TEST(PeopleTiles, CountersTellHeadsNeighboursAndLargeGroupsApart) {
  EngineRun run;
  run.with([](PrConfig& config) { config.compositeModeMaxPeople = 16; }).engine<PeopleFramingLayout>();
  run.see(unitsInARow("HPTL"));
  EXPECT_EQ(run.picture(), "PROXIMITY [1] [2 3] [4 5 6] [7 8 9 10]");
  EXPECT_EQ(run.current().headFrameCount, 1);
  EXPECT_EQ(run.current().proximityFrameCount, 2);
  EXPECT_EQ(run.current().largeProximityFrameCount, 1);
  EXPECT_EQ(run.current().frames.back().frameType, FramingType::PROXIMITY);
}

// Two in columns, 20 s long: how tall their heads are shown, in per cent of the output.
std::vector<int> shownHeights(EngineRun& run, int first, int second, std::int32_t x) {
  run.watch(scene()
                .person(1)
                .sized(first * 5 / 6, first)
                .at(150, 300)
                .person(2)
                .sized(second * 5 / 6, second)
                .at(x, 300),
            20000);
  std::vector<int> shown;
  for (const Frame& frame : run.current().frames) {
    const int height = shown.empty() ? first : second;
    shown.push_back(100 * height / (frame.source.bottom - frame.source.top));
  }
  return shown;
}

TEST(PeopleTiles, HeadsOfARowAreAlikeAlsoWhenOneTileIsMadeAnew) {
  for (const bool isSteady : {false, true}) {
    EngineRun run;
    run.with([&](PrConfig& config) { config.steadyFramingEnabled = isSteady; }).engine<PeopleFramingLayout>();
    using Heights = std::vector<int>;
    EXPECT_EQ(shownHeights(run, 120, 100, 900), (isSteady ? Heights{37, 32} : Heights{39, 34}));
    // The second leans back and aside: the first, who has not moved, is shown smaller with it.
    EXPECT_EQ(shownHeights(run, 120, 85, 960), (isSteady ? Heights{33, 27} : Heights{39, 29}));
  }
}

TEST(PeopleTiles, AViewGrowsAsFarAsItShowsNoMoreOthers) {
  Frame tile;
  tile.dest = {0, 0, 640, 720};
  tile.frameLayout = kFrameLayoutHeadColumnHalf;
  const Rect base{560, 280, 660, 400};
  const auto heightBeside = [&](const Rect& other) {
    TileView view(tile, {1280, 720}, base);
    view.growBeside({other}, 600);
    return heightOf(getRuleOfThirdFrame(view.box(), 640, 720, tile.frameLayout, {1280, 720}, 0));
  };
  EXPECT_EQ(heightBeside({0, 0, 10, 10}), 604);
  EXPECT_EQ(heightBeside({800, 300, 880, 400}), 404) << "half of the way";
  EXPECT_EQ(heightBeside({700, 300, 780, 400}), 204) << "as it was";
}

TEST(PeopleTiles, EyesStandAtOneHeightAsFarAsTheImageAndOthersAllow) {
  Frame tile;
  tile.dest = {0, 0, 640, 720};
  tile.frameLayout = kFrameLayoutHeadColumnHalf;
  const auto eyesAt = [&](std::int32_t top, const Rect& other) {
    const Rect own{560, top, 660, top + 120};
    TileView view(tile, {1280, 720}, own);
    view.bringEyesInLine(own, {other});
    const Rect seen = getRuleOfThirdFrame(view.box(), 640, 720, tile.frameLayout, {1280, 720}, 0);
    return 100 * (top + 60 - seen.top) / heightOf(seen);
  };
  const Rect nobody{0, 0, 10, 10};
  EXPECT_EQ(eyesAt(280, nobody), 39);
  EXPECT_EQ(eyesAt(0, nobody), 30) << "no image above";
  EXPECT_EQ(eyesAt(280, {560, 150, 660, 270}), 32) << "somebody above";
}

}  // namespace
}  // namespace fyn::productionrules::testing
