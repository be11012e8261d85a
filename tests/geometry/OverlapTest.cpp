#include <gtest/gtest.h>

#include <cmath>

#include "geometry/Overlap.h"
#include "tests/geometry/GeometryTesting.h"

namespace fyn::productionrules {
namespace {

TEST(Overlap, AreaIsNeverNegative) {
  EXPECT_EQ(calculateArea({10, 20, 30, 50}), 600.0);
  EXPECT_EQ(calculateArea({30, 20, 10, 50}), 600.0);
  EXPECT_EQ(calculateArea({10, 20, 10, 50}), 0.0);
  // Beyond 32 bits: 65536 * 65536.
  EXPECT_EQ(calculateArea({0, 0, 65536, 65536}), 4294967296.0);
}

TEST(Overlap, OverlappingAreaSpansTheHeightOfBoth) {
  const struct {
    const char* what;
    Rect a;
    Rect b;
    double area;
  } rows[] = {
      {"the same", {0, 0, 10, 10}, {0, 0, 10, 10}, 100.0},
      {"side by side, overlapping", {0, 0, 10, 10}, {4, 5, 14, 20}, 6.0 * 20.0},
      {"apart horizontally", {0, 0, 10, 10}, {20, 0, 30, 10}, 100.0},  // |10 - 20| * |0 - 10|
      {"apart vertically", {0, 0, 10, 10}, {0, 30, 10, 40}, 10.0 * 40.0},
      {"touching", {0, 0, 10, 10}, {10, 0, 20, 10}, 0.0},
      {"both without height", {0, 5, 10, 5}, {0, 5, 10, 5}, 0.0},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(getOverlappingArea(row.a, row.b), row.area) << row.what;
    EXPECT_EQ(getOverlappingArea(row.b, row.a), row.area) << row.what;
  }
}

TEST(Overlap, RatioIsOfTheLeftmostAndNotClipped) {
  const struct {
    const char* what;
    Rect a;
    Rect b;
    float ratio;
  } rows[] = {
      {"corner", {0, 0, 10, 10}, {5, 5, 15, 15}, 0.25F},  // 5 * 5 / 100
      {"corner, other order", {5, 5, 15, 15}, {0, 0, 10, 10}, 0.25F},
      {"upper is not leftmost", {0, 5, 10, 15}, {5, 0, 15, 10}, 0.25F},
      {"b inside a", {0, 0, 10, 10}, {4, 4, 6, 6}, 0.36F},  // 6 * 6 / 100, although b is 2 x 2
      {"equal lefts: b is leftmost", {0, 0, 10, 10}, {0, 2, 20, 7}, 1.6F},  // 20 * 8 / 100
      {"equal lefts, swapped", {0, 2, 20, 7}, {0, 0, 10, 10}, 0.8F},        // 10 * 8 / 100
      {"touching", {0, 0, 10, 10}, {10, 0, 20, 10}, 0.0F},
      {"apart", {0, 0, 10, 10}, {11, 0, 20, 10}, 0.0F},
      {"inverted leftmost", {0, 10, 10, 0}, {5, 0, 15, 10}, 0.0F},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(getOverlap(row.a, row.b), row.ratio) << row.what;
  }
}

TEST(Overlap, RatioWithoutAreaIsNotANumber) {
  EXPECT_TRUE(std::isnan(getOverlap({0, 0, 0, 10}, {5, 0, 15, 10})));
  EXPECT_TRUE(std::isinf(getOverlap({0, 5, 10, 5}, {5, 0, 15, 10})));
}

TEST(Overlap, SizeDeltaIsRelativeToTheLarger) {
  EXPECT_EQ(getSizeDelta({0, 0, 10, 10}, {50, 50, 60, 60}), 0.0F);
  EXPECT_EQ(getSizeDelta({0, 0, 10, 10}, {0, 0, 5, 5}), 0.75F);
  EXPECT_EQ(getSizeDelta({0, 0, 5, 5}, {0, 0, 10, 10}), 0.75F);
  EXPECT_EQ(getSizeDelta({7, 0, 7, 10}, {0, 0, 10, 10}), 0.0F);
  EXPECT_EQ(getSizeDelta({0, 0, 10, 10}, {0, 7, 10, 7}), 0.0F);
}

}  // namespace
}  // namespace fyn::productionrules
