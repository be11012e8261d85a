#include <gtest/gtest.h>

#include "geometry/OffCenter.h"
#include "tests/geometry/GeometryTesting.h"
#include "tests/testing/CapturedLog.h"

namespace fyn::productionrules {
namespace {

using testing::CapturedLog;
using testing::configure;
using Lines = std::vector<std::string>;

TEST(OffCenter, EachHeadShapeHasItsOwnTriggers) {
  configure([](PrConfig& c) {
    c.headSingleOffcenterBottomTrigger = 1;
    c.headSingleOffcenterSideTrigger = 11;
    c.headSquareOffcenterBottomTrigger = 2;
    c.headSquareOffcenterSideTrigger = 12;
    c.headWideOffcenterBottomTrigger = 3;
    c.headWideOffcenterSideTrigger = 13;
    c.headColumnNarrowOffcenterBottomTrigger = 4;
    c.headColumnNarrowOffcenterSideTrigger = 14;
    c.headColumnHalfOffcenterBottomTrigger = 5;
    c.headColumnHalfOffcenterSideTrigger = 15;
  });
  // In a frame of 100 x 100 pixels a per cent is a pixel.
  const Rect frame{1000, 500, 1100, 600};
  EXPECT_EQ(calculateOffcenterFrameBound(frame, kFrameLayoutHeadSingle), (Rect{1011, 500, 1089, 599}));
  EXPECT_EQ(calculateOffcenterFrameBound(frame, kFrameLayoutHeadSquare), (Rect{1012, 500, 1088, 598}));
  EXPECT_EQ(calculateOffcenterFrameBound(frame, kFrameLayoutHeadWide), (Rect{1013, 500, 1087, 597}));
  EXPECT_EQ(calculateOffcenterFrameBound(frame, kFrameLayoutHeadColumnNarrow), (Rect{1014, 500, 1086, 596}));
  EXPECT_EQ(calculateOffcenterFrameBound(frame, kFrameLayoutHeadColumnHalf), (Rect{1015, 500, 1085, 595}));
  // A number that is no shape has triggers of 0.
  EXPECT_EQ(calculateOffcenterFrameBound(frame, static_cast<FrameLayout>(12)), frame);
}

TEST(OffCenter, SidesAreCutTowardsZero) {
  // Default HeadSingle: side 20, bottom 10. Width 33: side 6.6, left 16.6 -> 16, right 43 - 6.6 = 36.4 -> 36.
  // Height 17: 1.7, bottom 37 - 1.7 = 35.3 -> 35. Left of the image: -10 + 6.6 = -3.4 -> -3.
  EXPECT_EQ(calculateOffcenterFrameBound({10, 20, 43, 37}, kFrameLayoutHeadSingle), (Rect{16, 20, 36, 35}));
  EXPECT_EQ(calculateOffcenterFrameBound({-10, 20, 23, 37}, kFrameLayoutHeadSingle), (Rect{-3, 20, 16, 35}));
}

TEST(OffCenter, ShapesOfNeighboursAreReported) {
  const Rect frame{10, 20, 43, 37};
  const struct {
    FrameLayout layout;
    const char* text;
  } rows[] = {
      {kFrameLayoutProximityColumnNarrow, "ProximityColumnNarrow"},
      {kFrameLayoutProximityColumnHalf, "ProximityColumnHal"},
      {kFrameLayoutProximityColumnWide, "ProximityColumnWide"},
      {kFrameLayoutProximitySingleWide, "ProximitySingleWide"},
      {kFrameLayoutNone, "None"},
  };
  for (const auto& row : rows) {
    CapturedLog log;
    EXPECT_EQ(calculateOffcenterFrameBound(frame, row.layout), frame);
    EXPECT_EQ(log.lines(),
              (Lines{std::string("E|FramingUtil|calculateOffcenterFrameBound  NOT defined for this mode [") +
                     row.text + "] \n"}));
  }
}

TEST(OffCenter, HeadAgainstTheInnerBound) {
  // Frame of 1000 x 500 with side 20 and bottom 10 per cent: bound {300, 100, 900, 550}.
  const Rect frame{100, 100, 1100, 600};
  const struct {
    const char* what;
    Rect head;
    bool off;
  } rows[] = {
      {"inside", {400, 200, 500, 300}, false},
      {"on the bound's left edge, inside", {300, 200, 400, 300}, true},
      {"on the bound's bottom edge, inside", {400, 450, 500, 550}, true},
      {"on the bound's top edge, inside", {400, 100, 500, 200}, true},
      {"across the left edge", {250, 200, 350, 300}, true},
      {"across the bottom edge", {400, 500, 500, 560}, true},
      {"touching the left edge from outside", {200, 200, 300, 300}, false},
      {"outside", {120, 200, 280, 300}, true},
      {"across the top edge", {400, 50, 500, 150}, true},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(isOffCenter(row.head, frame, kFrameLayoutHeadSingle), row.off) << row.what;
  }
}

}  // namespace
}  // namespace fyn::productionrules
