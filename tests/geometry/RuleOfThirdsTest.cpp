#include <gtest/gtest.h>

#include <cmath>

#include "geometry/RuleOfThirds.h"
#include "tests/geometry/GeometryTesting.h"
#include "tests/testing/CapturedLog.h"

namespace fyn::productionrules {
namespace {

using testing::CapturedLog;
using testing::configure;
using Lines = std::vector<std::string>;

struct ZoomRow {
  const char* what;
  int imageWidth;
  int imageHeight;
  int zoomLimit;
  Rect grown;
  float amount;
};

// {100, 100, 200, 200} with 25 per cent above and below: full height 200, 50 on each side. The zoom test
// counts 50 + 200 - 100 - 50 = 100 pixels.
constexpr ZoomRow kZoomRows[] = {
    {"no limit", 1280, 720, 0, {100, 100, 200, 200}, 50.0F},
    {"negative limit", 1280, 720, -3, {100, 100, 200, 200}, 50.0F},
    {"below the limit", 1280, 720, 8, {100, 100, 200, 200}, 50.0F},
    {"exactly at the limit", 1280, 700, 7, {100, 100, 200, 200}, 50.0F},
    // 0.5 * 720 / 2 - 100 = 80 and 0.5 * 1280 / 2 - 100 = 220.
    {"grows", 1280, 720, 2, {-10, 60, 310, 240}, 90.0F},
    // 0.5 * 724 / 2 - 100 = 81: 40 up, 41 down. 0.5 * 1284 / 2 - 100 = 221: 110 and 111.
    {"odd growth to bottom and right", 1284, 724, 2, {-10, 60, 311, 241}, 90.5F},
    // 0.5 * 720 / 7 - 100 = -48.57 -> -48, 0.5 * 1280 / 7 - 100 = -8.57 -> -8.
    {"the limit may even shrink", 1280, 720, 7, {104, 124, 196, 176}, 26.0F},
    // 0.5 * 388 / 2 - 100 = -3: half -1, low bit 1. 0.5 * 400 / 2 - 100 = 0.
    {"odd shrinking", 400, 388, 2, {100, 101, 200, 200}, 49.5F},
};

TEST(RuleOfThirds, ZoomLimit) {
  for (const ZoomRow& row : kZoomRows) {
    SCOPED_TRACE(row.what);
    Rect rect{100, 100, 200, 200};
    float bottom = -1.0F;
    float top = -1.0F;
    EXPECT_EQ(&applyZoomFactor(rect, row.imageWidth, row.imageHeight, 25, 25, bottom, top, row.zoomLimit),
              &rect);
    EXPECT_EQ(rect, row.grown);
    EXPECT_EQ(bottom, row.amount);
    EXPECT_EQ(top, row.amount);
  }
}

TEST(RuleOfThirds, TooLittleLeftForTheBoxLeavesNoNumber) {
  Rect rect{100, 100, 200, 200};
  float bottom = 0.0F;
  float top = 0.0F;
  applyZoomFactor(rect, 1280, 720, 60, 39, bottom, top, 4);
  EXPECT_TRUE(std::isinf(bottom));
  EXPECT_TRUE(std::isinf(top));
  applyZoomFactor(rect, 1280, 720, 100, 0, bottom, top, 4);
  EXPECT_TRUE(std::isnan(top));
  EXPECT_EQ(rect, (Rect{100, 100, 200, 200}));
  // 2 per cent are enough: 100 / 0.02 = 5000 pixels.
  applyZoomFactor(rect, 1280, 720, 98, 0, bottom, top, 0);
  EXPECT_FLOAT_EQ(bottom, 4900.0F);
  EXPECT_EQ(top, 0.0F);
}

TEST(RuleOfThirds, EachShapeHasItsOwnLines) {
  configure([](PrConfig& c) {
    c.frameLayoutHeadSingleBottomLine = 21;
    c.frameLayoutHeadSingleTopLine = 29;
    c.frameLayoutHeadSquareBottomLine = 22;
    c.frameLayoutHeadSquareTopLine = 28;
    c.frameLayoutHeadWideBottomLine = 23;
    c.frameLayoutHeadWideTopLine = 27;
    c.frameLayoutHeadColumnNarrowBottomLine = 24;
    c.frameLayoutHeadColumnNarrowTopLine = 26;
    c.frameLayoutHeadColumnHalfBottomLine = 25;
    c.frameLayoutHeadColumnHalfTopLine = 25;
    c.frameLayoutProximityColumnNarrowBottomLine = 26;
    c.frameLayoutProximityColumnNarrowTopLine = 24;
    c.frameLayoutProximityColumnHalfBottomLine = 27;
    c.frameLayoutProximityColumnHalfTopLine = 23;
    c.frameLayoutProximityColumnWideBottomLine = 28;
    c.frameLayoutProximityColumnWideTopLine = 22;
    c.frameLayoutProximitySingleWideBottomLine = 29;
    c.frameLayoutProximitySingleWideTopLine = 21;
  });
  // The lines leave 50 per cent for a box of 50 pixels: the frame is 100 high and a per cent is a pixel.
  for (int layout = kFrameLayoutHeadSingle; layout < kFrameLayoutNone; ++layout) {
    const Rect frame =
        getRuleOfThirdFrame({600, 300, 650, 350}, 200, 100, static_cast<FrameLayout>(layout), {1280, 720}, 0);
    EXPECT_EQ(frame, (Rect{525, 300 - (29 - layout), 725, 350 + 21 + layout})) << layout;
  }
  // A number that is no shape has no lines.
  EXPECT_EQ(getRuleOfThirdFrame({600, 300, 650, 350}, 200, 100, static_cast<FrameLayout>(10), {1280, 720}, 0),
            (Rect{575, 300, 675, 350}));
}

struct FrameRow {
  const char* what;
  Rect box;
  int zoomLimit;
  Dimension image;
  Rect frame;
};

// 16:9 with 25 per cent above and below the box.
constexpr FrameRow kFrameRows[] = {
    // 250 to 450, 200 * 16 / 9 = 355.6, half 177, centre 650.
    {"in the middle", {600, 300, 700, 400}, 0, {1280, 720}, {473, 250, 827, 450}},
    // -40 to 160: the 40 above are lost at the bottom. 120 * 16 / 9 = 213.3, half 106.
    {"above the image", {600, 10, 700, 110}, 0, {1280, 720}, {544, 0, 756, 120}},
    // 550 to 750 slides up.
    {"below the image", {600, 600, 700, 700}, 0, {1280, 720}, {473, 520, 827, 720}},
    // -50 to 950, right 650 + 640.
    {"higher than the image", {600, 200, 700, 700}, 0, {1280, 720}, {0, 0, 1280, 720}},
    // 50 - 177 slides right by as much: 0 to 2 * 177.
    {"left of the image", {0, 300, 100, 400}, 0, {1280, 720}, {0, 250, 354, 450}},
    {"left of the image and wider", {0, 300, 100, 400}, 0, {300, 720}, {0, 250, 300, 450}},
    // 1240 + 177 = 1417 slides left by 137.
    {"right of the image", {1200, 300, 1280, 400}, 0, {1280, 720}, {926, 250, 1280, 450}},
    // The box grows to {490, 260, 810, 440}, 90 above and below: 170 to 530, 360 * 16 / 9 = 640.
    {"zoom limit", {600, 300, 700, 400}, 2, {1280, 720}, {330, 170, 970, 530}},
    {"empty box", {600, 300, 600, 300}, 0, {1280, 720}, {600, 300, 600, 300}},
    {"no image", {600, 300, 700, 400}, 0, {0, 0}, {0, 0, 0, 0}},
};

TEST(RuleOfThirds, FrameStaysInTheImage) {
  configure([](PrConfig& c) {
    c.frameLayoutHeadSquareBottomLine = 25;
    c.frameLayoutHeadSquareTopLine = 25;
  });
  for (const FrameRow& row : kFrameRows) {
    EXPECT_EQ(getRuleOfThirdFrame(row.box, 1280, 720, kFrameLayoutHeadSquare, row.image, row.zoomLimit),
              row.frame)
        << row.what;
  }
}

TEST(RuleOfThirds, NoShapeIsReported) {
  CapturedLog log;
  EXPECT_EQ(getRuleOfThirdFrame({-5, 3, 700, 400}, 1280, 720, kFrameLayoutNone, {1280, 720}, 2),
            (Rect{-5, 3, 700, 400}));
  EXPECT_EQ(log.lines(), (Lines{"E|TVPR_COMMON|getRuleOfThirdFrame Layout type is kFrameLayoutNone "}));
}

}  // namespace
}  // namespace fyn::productionrules
