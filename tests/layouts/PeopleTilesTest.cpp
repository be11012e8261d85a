#include <gtest/gtest.h>

#include "layouts/people/PeopleFramingLayout.h"
#include "layouts/people/PeopleTiles.h"
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

}  // namespace
}  // namespace fyn::productionrules::testing
