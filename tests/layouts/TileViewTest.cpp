#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

#include "config/PrConfig.h"
#include "geometry/RectMath.h"
#include "layouts/people/GrownViews.h"
#include "layouts/people/TileView.h"
#include "tests/testing/TestEnvironment.h"

namespace fyn::productionrules::testing {
namespace {

constexpr Dimension kImage{1280, 720};

Rect headAt(std::int32_t middle) {
  return {middle - 40, 300, middle + 40, 400};
}

struct TurnCase {
  const char* name;
  std::vector<Rect> others;
  bool turns;
  bool isClear;
};

// The tile shows 492 to 788 as it is: the head in its middle.
TEST(TileView, TurnsFromASliverAsFarAsNobodyElseIsCut) {
  const TurnCase cases[] = {
      {"nobody near", {headAt(900)}, false, true},
      {"a sliver at the right", {headAt(810)}, true, true},
      {"and somebody at the left whom half of the turn misses", {headAt(810), headAt(428)}, true, true},
      {"and somebody at the left whom it would cut", {headAt(810), headAt(450)}, true, false},
      {"slivers at both sides", {headAt(810), headAt(470)}, false, false},
      {"half a head", {headAt(788)}, false, false},
  };
  Frame tile;
  tile.frameLayout = kFrameLayoutHeadColumnNarrow;
  tile.dest = {0, 0, 427, 720};
  for (const TurnCase& each : cases) {
    TileView view(tile, kImage, grownBy(headAt(640), 60, 60));
    const Rect before = view.view();
    ASSERT_EQ(before.left, 492);
    ASSERT_EQ(before.right, 788);
    view.turnFrom(each.others, headAt(640));
    EXPECT_EQ(view.view().left != before.left, each.turns) << each.name;
    const bool isCut = std::any_of(each.others.begin(), each.others.end(),
                                   [&](const Rect& head) { return cutsOff(head, view.view()); });
    EXPECT_EQ(isCut, !each.isClear) << each.name;
    EXPECT_EQ(widthOf(view.view()), widthOf(before)) << each.name;
  }
}

// Of two boxes, so that all else differs between two views of one box.
TEST(GrownViews, AreThoseThatAreGrownAnew) {
  TestEnvironment environment;
  std::mt19937 random(5);
  const auto either = [&random](auto one, auto other) { return random() % 2 == 0 ? one : other; };
  GrownViews views;
  for (int trial = 0; trial < 2000; ++trial) {
    PrConfig config;
    config.frameLayoutHeadWideBottomLine = either(40, 50);
    PrConfig::set(config);
    Frame tile;
    tile.frameLayout = either(kFrameLayoutHeadSingle, kFrameLayoutHeadWide);
    tile.dest = {0, 0, either(640, 800), either(360, 720)};
    TileView view(tile, {either(1280, 1920), either(720, 1080)}, headAt(either(640, 672)));
    const TileGrowth growth{either(200.0, 500.0), either(100.0, 600.0), either(1.0, 1.1)};
    TileView grown = views.grown(view, growth);
    view.grow(growth);
    ASSERT_EQ(grown.box(), view.box()) << trial;
    ASSERT_EQ(grown.view(), view.view()) << trial;
  }
}

}  // namespace
}  // namespace fyn::productionrules::testing
