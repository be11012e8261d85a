#include <gtest/gtest.h>

#include "layouts/PeopleFramingLayout.h"
#include "layouts/PeopleTiles.h"
#include "tests/layouts/PeopleRun.h"

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

std::string tilesText(const Layout& layout) {
  constexpr std::size_t kPrefix = std::string_view("kFrameLayout").size();
  std::string text;
  for (const Frame& frame : layout.frames) {
    const Rect& dest = frame.dest;
    text += (text.empty() ? "" : "; ") + std::to_string(dest.left) + "," + std::to_string(dest.top) + " " +
            std::to_string(dest.right - dest.left) + "x" + std::to_string(dest.bottom - dest.top) + " " +
            std::string(frameLayoutName(frame.frameLayout)).substr(kPrefix);
  }
  return text;
}

struct TileCase {
  const char* units;
  const char* type;
  const char* tiles;
};

constexpr TileCase kTileCases[] = {
    {"H", "HEAD", "0,0 1280x720 HeadSingle"},
    {"P", "PROXIMITY", "0,0 1280x720 ProximitySingleWide"},
    {"HH", "HEAD", "0,0 640x720 HeadColumnHalf; 640,0 640x720 HeadColumnHalf"},
    {"PP", "PROXIMITY", "0,0 640x720 ProximityColumnHalf; 640,0 640x720 ProximityColumnHalf"},
    {"HP", "PROXIMITY", "0,0 427x720 HeadColumnNarrow; 427,0 853x720 ProximityColumnWide"},
    {"PH", "PROXIMITY", "0,0 853x720 ProximityColumnWide; 853,0 427x720 HeadColumnNarrow"},
    {"HHH", "HEAD",
     "0,0 427x720 HeadColumnNarrow; 427,0 426x720 HeadColumnNarrow; 853,0 427x720 HeadColumnNarrow"},
    {"HPP", "PROXIMITY",
     "0,0 427x720 HeadColumnNarrow; 427,0 426x720 ProximityColumnNarrow; 853,0 427x720 "
     "ProximityColumnNarrow"},
    {"PHP", "PROXIMITY",
     "0,0 427x720 ProximityColumnNarrow; 427,0 426x720 HeadColumnNarrow; 853,0 427x720 "
     "ProximityColumnNarrow"},
    {"PPP", "PROXIMITY",
     "0,0 427x720 ProximityColumnNarrow; 427,0 426x720 ProximityColumnNarrow; 853,0 427x720 "
     "ProximityColumnNarrow"},
    {"PHH", "PROXIMITY", "0,0 640x720 ProximityColumnHalf; 640,0 640x360 HeadWide; 640,360 640x360 HeadWide"},
    {"HHP", "PROXIMITY", "0,0 640x360 HeadWide; 0,360 640x360 HeadWide; 640,0 640x720 ProximityColumnHalf"},
    {"HPH", "PROXIMITY",
     "0,0 320x720 HeadColumnNarrow; 320,0 640x720 ProximityColumnHalf; 960,0 320x720 HeadColumnNarrow"},
    {"HPHH", "PROXIMITY",
     "0,0 640x360 HeadWide; 640,0 640x360 ProximitySingleWide; 0,360 640x360 HeadWide; 640,360 640x360 "
     "HeadWide"},
    {"HPHHP", "PROXIMITY",
     "0,0 427x360 HeadSquare; 427,0 426x360 ProximityColumnHalf; 853,0 427x360 HeadSquare; 0,360 640x360 "
     "HeadWide; 640,360 640x360 ProximityColumnHalf"},
    {"HHHPHH", "PROXIMITY",
     "0,0 427x360 HeadSquare; 427,0 426x360 HeadSquare; 853,0 427x360 HeadSquare; 0,360 427x360 "
     "ProximityColumnHalf; 427,360 426x360 HeadSquare; 853,360 427x360 HeadSquare"},
    {"HHHHHPH", "PROXIMITY",
     "0,0 320x360 HeadSquare; 320,0 320x360 HeadSquare; 640,0 320x360 HeadSquare; 960,0 320x360 HeadSquare; "
     "0,360 427x360 HeadSquare; 427,360 426x360 ProximityColumnHalf; 853,360 427x360 HeadSquare"},
    {"HHHHHHHH", "HEAD",
     "0,0 320x360 HeadSquare; 320,0 320x360 HeadSquare; 640,0 320x360 HeadSquare; 960,0 320x360 HeadSquare; "
     "0,360 320x360 HeadSquare; 320,360 320x360 HeadSquare; 640,360 320x360 HeadSquare; 960,360 320x360 "
     "HeadSquare"},
    {"HHHHHHHHH", "GROUP", "0,0 1280x720 None"},
    {"L", "GROUP", "0,0 1280x720 None"},
};

TEST(PeopleTiles, EveryRowOfUnitsHasItsTiles) {
  for (const TileCase& each : kTileCases) {
    PeopleRun run;
    run.with([](PrConfig& config) { config.compositeModeMaxPeople = 16; }).engine<PeopleFramingLayout>();
    run.see(unitsInARow(each.units));
    EXPECT_EQ(layoutToString(run.current().layoutType), each.type) << each.units;
    EXPECT_EQ(tilesText(run.current()), each.tiles) << each.units;
  }
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
  PeopleRun run;
  run.with([](PrConfig& config) { config.compositeModeMaxPeople = 16; }).engine<PeopleFramingLayout>();
  run.see(unitsInARow("HPTL"));
  EXPECT_EQ(run.picture(), "PROXIMITY [1] [2 3] [4 5 6] [7 8 9 10]");
  EXPECT_EQ(run.current().headFrameCount, 1);
  EXPECT_EQ(run.current().proximityFrameCount, 2);
  EXPECT_EQ(run.current().largeProximityFrameCount, 1);
  EXPECT_EQ(run.current().frames.back().frameType, FramingType::PROXIMITY);
}

TEST(PeopleTiles, OfTwoOneAboveTheOtherTheLowerComesFirst) {
  PeopleRun run;
  run.engine<PeopleFramingLayout>();
  run.see(scene().person(1).at(300, 150).person(2).at(300, 550).person(3).at(299, 350));
  EXPECT_EQ(run.picture(), "HEAD [3] [2] [1]");
}

TEST(PeopleTiles, WithoutTheFeatureEverybodyIsAlone) {
  PeopleRun run;
  run.with([](PrConfig& config) { config.newPfFeatureEnabled = false; }).engine<PeopleFramingLayout>();
  run.see(unitsInARow("PH"));
  EXPECT_EQ(run.picture(), "HEAD [1] [2] [3]");
}

}  // namespace
}  // namespace fyn::productionrules::testing
