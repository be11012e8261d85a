#include <gtest/gtest.h>

#include "geometry/FramePredicates.h"
#include "tests/geometry/GeometryTesting.h"

namespace fyn::productionrules {
namespace {

using testing::configure;

constexpr Rect kFrame{100, 100, 200, 200};

struct PlaceRow {
  const char* what;
  Rect head;
  bool onEdge;
  bool outside;
  bool inside;
  bool overlaps;
  bool sharesEdge;
};

// Where a head can be relative to kFrame, and what each question says about it.
constexpr PlaceRow kPlaces[] = {
    // what, head, onEdge, outside, inside, overlaps, sharesEdge
    {"well inside", {120, 120, 180, 180}, false, false, true, true, false},
    {"inside on the left edge", {100, 120, 180, 180}, false, false, false, true, true},
    {"inside on the bottom edge", {120, 120, 180, 200}, false, false, false, true, true},
    {"across the left edge", {90, 120, 110, 180}, true, false, false, true, false},
    {"across the top edge", {120, 90, 180, 110}, true, false, false, true, false},
    {"across the right edge", {190, 120, 210, 180}, true, false, false, true, false},
    {"across the bottom edge", {120, 190, 180, 210}, true, false, false, true, false},
    {"around the frame", {90, 90, 210, 210}, true, false, false, true, false},
    {"touching the left edge", {50, 120, 100, 180}, false, false, false, false, false},
    {"touching the corner", {50, 50, 100, 100}, false, false, false, false, false},
    {"left of it", {50, 120, 99, 180}, false, true, false, false, false},
    {"below it", {120, 201, 180, 250}, false, true, false, false, false},
    {"the frame itself", {100, 100, 200, 200}, false, false, false, true, true},
    {"empty, inside", {150, 150, 150, 150}, false, false, true, true, false},
    // The leftmost has no area: the overlap is not a number, which lets the tests of the edges speak.
    {"a line across the top edge", {90, 90, 90, 110}, true, true, false, false, false},
    {"inverted across the left edge", {110, 120, 90, 180}, false, true, true, false, false},
};

TEST(FramePredicates, PlaceOfAHead) {
  for (const PlaceRow& row : kPlaces) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(isOnFrameEdge(row.head, kFrame), row.onEdge);
    EXPECT_EQ(isOutsideEdge(row.head, kFrame), row.outside);
    EXPECT_EQ(isInside(kFrame, row.head), row.inside);
    EXPECT_EQ(isInProximity(row.head, kFrame), row.overlaps);
    EXPECT_EQ(isNotCenter(row.head, kFrame), row.sharesEdge);
  }
}

TEST(FramePredicates, OneHeadOfTheGroupIsEnough) {
  const Rect inside{120, 120, 180, 180};
  const Rect across{190, 120, 210, 180};
  const Rect outside{300, 120, 310, 180};
  EXPECT_FALSE(isGFHeadOnEdge(kFrame, {}));
  EXPECT_FALSE(isGFHeadOnEdge(kFrame, {inside, outside}));
  EXPECT_TRUE(isGFHeadOnEdge(kFrame, {inside, across}));
  EXPECT_FALSE(isGFHeadOutside(kFrame, {}));
  EXPECT_FALSE(isGFHeadOutside(kFrame, {inside, across}));
  EXPECT_TRUE(isGFHeadOutside(kFrame, {inside, outside}));
}

TEST(FramePredicates, GroupMovesAwayWhenItReachesOut) {
  const struct {
    Rect latest;
    bool away;
  } rows[] = {
      {kFrame, false},
      {{120, 120, 180, 180}, false},
      {{99, 120, 180, 180}, true},
      {{120, 99, 180, 180}, true},
      {{120, 120, 201, 180}, true},
      {{120, 120, 180, 201}, true},
      {{}, true},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(isGFMoveAway(kFrame, row.latest), row.away) << ::testing::PrintToString(row.latest);
  }
}

TEST(FramePredicates, GroupMovesCloserByArea) {
  const struct {
    int percent;
    Rect current;
    Rect latest;
    bool closer;
  } rows[] = {
      {20, {0, 0, 100, 100}, {0, 0, 80, 100}, true},    // 8000 <= 10000 * 0.8
      {20, {0, 0, 100, 100}, {0, 0, 3, 2667}, false},   // 8001
      {0, {0, 0, 100, 100}, {50, 50, 150, 150}, true},  // equal counts as closer
      {100, {0, 0, 100, 100}, {0, 0, 1, 1}, false},
      {100, {0, 0, 100, 100}, {}, true},
      {20, {}, {}, true},
      {20, {}, {0, 0, 1, 1}, false},
      // 65536 x 65536 leaves 32 bits and wraps to 0.
      {20, {0, 0, 65536, 65536}, {0, 0, 1, 1}, false},
  };
  for (const auto& row : rows) {
    configure([&](PrConfig& c) { c.groupBoundaryBufSizeMoveCloser = row.percent; });
    EXPECT_EQ(isGFMoveClose(row.current, row.latest), row.closer)
        << ::testing::PrintToString(row.current) << ::testing::PrintToString(row.latest);
  }
}

TEST(FramePredicates, SizesNotPlacesMakeCentre) {
  const struct {
    Rect other;
    bool centre;
  } rows[] = {
      {{500, 500, 600, 600}, true}, {{0, 0, 119, 100}, true},  // halves 50 and 59
      {{0, 0, 120, 100}, false},                               // halves 50 and 60
      {{0, 0, 100, 82}, true},                                 // halves 50 and 41
      {{0, 0, 100, 81}, false},                                // 81 / 2 towards zero is 40
      {{100, 100, 0, 0}, false},                               // inverted: halves 50 and -50
  };
  for (const auto& row : rows) {
    EXPECT_EQ(isCenter({0, 0, 100, 100}, row.other), row.centre) << ::testing::PrintToString(row.other);
  }
}

TEST(FramePredicates, ProximityWithAMinimumWidth) {
  const struct {
    Rect head;
    Rect other;
    int minWidth;
    bool near;
  } rows[] = {
      // 50 wide around 100, counted as 0 to 200.
      {{75, 0, 125, 50}, {199, 0, 300, 50}, 200, true},
      {{75, 0, 125, 50}, {200, 0, 300, 50}, 200, false},
      {{75, 100, 125, 150}, {-100, 100, 1, 150}, 200, true},
      {{75, 100, 125, 150}, {-100, 100, 0, 150}, 200, false},
      // Vertically nothing is added.
      {{75, 0, 125, 50}, {100, 50, 150, 90}, 200, false},
      {{75, 50, 125, 90}, {100, 0, 150, 50}, 200, false},
      // Wide enough: as without a minimum.
      {{75, 0, 125, 50}, {125, 0, 300, 50}, 50, false},
      {{75, 0, 125, 50}, {124, 0, 300, 50}, 50, true},
      // The centre of 75 and 126 is 100.5 and half of 201 is 100: reaches to 200.5.
      {{75, 0, 126, 50}, {200, 0, 300, 50}, 201, true},
      {{75, 0, 126, 50}, {201, 0, 300, 50}, 201, false},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(isInProximity(row.head, row.other, row.minWidth), row.near)
        << ::testing::PrintToString(row.head) << ::testing::PrintToString(row.other) << row.minWidth;
  }
}

}  // namespace
}  // namespace fyn::productionrules
