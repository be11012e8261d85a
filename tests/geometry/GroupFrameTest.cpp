#include <gtest/gtest.h>

#include "geometry/GroupFrame.h"
#include "geometry/GroupLayout.h"
#include "geometry/HeadBuffer.h"
#include "tests/geometry/GeometryTesting.h"
#include "tests/testing/CapturedLog.h"

namespace fyn::productionrules {
namespace {

using testing::CapturedLog;
using testing::configure;
using testing::person;
using Ids = std::set<std::int64_t>;
using Lines = std::vector<std::string>;

TEST(HeadBuffer, GrowsTheHeadWithinTheImage) {
  const struct {
    const char* what;
    Rect head;
    Dimension image;
    Rect grown;
  } rows[] = {
      {"a quarter of each size", {100, 200, 140, 300}, {1280, 720}, {90, 175, 150, 325}},
      {"towards zero", {100, 100, 103, 107}, {1280, 720}, {100, 99, 103, 108}},  // 0.75 -> 0, 1.75 -> 1
      {"cut at the left and top", {5, 5, 105, 105}, {1280, 720}, {0, 0, 130, 130}},
      {"cut at the right and bottom", {1200, 650, 1270, 710}, {1280, 720}, {1183, 635, 1280, 720}},
      {"inverted shrinks", {140, 300, 100, 200}, {1280, 720}, {150, 325, 90, 175}},
      {"no image", {100, 200, 140, 300}, {0, 0}, {90, 175, 0, 0}},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(getHeadBufferRect(row.head, row.image), row.grown) << row.what;
  }
}

TEST(HeadBuffer, BoundariesAreTheExtremesOfAllHeads) {
  int left = 1;
  int right = 2;
  int top = 3;
  int bottom = 4;
  CapturedLog log;
  getBoundaries({}, left, right, top, bottom);
  EXPECT_EQ((Rect{left, top, right, bottom}), (Rect{1, 3, 2, 4}));
  EXPECT_EQ(log.lines(), (Lines{"W|TVPR_COMMON|getBoundaries heads are empty, returning false"}));

  getBoundaries({{50, 60, 70, 80}, {-10, 65, 60, 75}, {55, 20, 65, 90}}, left, right, top, bottom);
  EXPECT_EQ((Rect{left, top, right, bottom}), (Rect{-10, 20, 70, 90}));
}

struct BoundaryRow {
  const char* what;
  int bufferPercent;
  std::vector<Rect> heads;
  Rect boundary;
};

TEST(GroupFrame, BoundaryIsSixteenToNine) {
  const BoundaryRow rows[] = {
      // 100 * 16 / 9 = 177.8 -> 178, half 89.
      {"narrower", 0, {{100, 100, 200, 200}}, {61, 100, 239, 200}},
      // 1000 * 0.5625 = 562.5 -> 563, half 281, and it leaves the image.
      {"wider", 0, {{0, 0, 1000, 100}}, {0, -231, 1000, 331}},
      {"a row of heads", 0, {{0, 0, 100, 100}, {900, 20, 1000, 90}}, {0, -231, 1000, 331}},
      {"16:9 counts as wider", 0, {{0, 0, 160, 90}}, {0, 0, 160, 90}},
      // 1.77 as a float lies below 1.77: 100 * 16 / 9 -> 178, centre 88.
      {"1.77 counts as narrower", 0, {{0, 0, 177, 100}}, {-1, 0, 177, 100}},
      // {75, 75, 225, 225}: 150 * 16 / 9 = 266.7 -> 267, half 133.
      {"with head buffers", 25, {{100, 100, 200, 200}}, {17, 75, 283, 225}},
      {"without height", 0, {{0, 50, 100, 50}}, {0, 22, 100, 78}},  // 56.25 -> 57, half 28
      {"without size", 0, {{5, 5, 5, 5}}, {5, 5, 5, 5}},
  };
  for (const BoundaryRow& row : rows) {
    configure([&](PrConfig& c) { c.headBufSizeEachSide = row.bufferPercent; });
    EXPECT_EQ(GroupFrame::getGroupDetectionBoundary(row.heads, "test", {1920, 1080}), row.boundary)
        << row.what;
  }
}

struct SourceRow {
  const char* what;
  int top;
  int bottom;
  int side;
  bool enabled;
  int zoomLimit;
  Rect head;
  Dimension image;
  Rect source;
};

constexpr Dimension kGroupImage{1280, 720};

constexpr SourceRow kSourceRows[] = {
    // {300, 200, 900, 500} has the boundary {300, 181, 900, 519}: 600 * 0.5625 = 337.5 -> 338.
    // Left 60, right 10 % of 660. Top 33.8 -> 33, bottom 20 % of 371 = 74.2 -> 74.
    {"buffers", 10, 20, 10, true, 0, {300, 200, 900, 500}, kGroupImage, {240, 148, 966, 593}},
    {"switched off", 10, 20, 10, false, 2, {300, 200, 900, 500}, kGroupImage, {300, 181, 900, 519}},
    // (2 * 0.6 + 1) * 600 = 1320; the right buffer, larger, is not asked.
    {"too wide with buffers", 0, 0, 60, true, 0, {300, 200, 900, 500}, kGroupImage, {0, 0, 1280, 720}},
    // (0.6 + 0.6 + 1) * 338 = 743.6.
    {"too high with buffers", 60, 60, 0, true, 0, {300, 200, 900, 500}, kGroupImage, {0, 0, 1280, 720}},
    // 1.5 * 854 = 1281 does not fit into 1281 and fits into 1282: left 213, right 0.25 * 1067 -> 266; then it
    // slides.
    {"just too wide", 0, 0, 25, true, 0, {200, 200, 1054, 500}, {1281, 2000}, {0, 0, 1281, 2000}},
    {"just fits, too wide once grown",
     0,
     0,
     25,
     true,
     0,
     {200, 200, 1054, 500},
     {1282, 2000},
     {0, 0, 1282, 2000}},
    // {600, 300, 700, 400} has the boundary {561, 300, 739, 400}; 720 / 100 > 2: 260 higher and 462 wider.
    {"zoom limit", 0, 0, 0, true, 2, {600, 300, 700, 400}, kGroupImage, {330, 170, 970, 530}},
    {"within the zoom limit", 0, 0, 0, true, 8, {600, 300, 700, 400}, kGroupImage, {561, 300, 739, 400}},
    {"no zoom limit", 0, 0, 0, true, 0, {600, 300, 700, 400}, kGroupImage, {561, 300, 739, 400}},
    // Boundaries that leave the image slide back.
    {"slides right", 0, 0, 0, false, 0, {0, 0, 100, 300}, kGroupImage, {0, 0, 534, 300}},
    {"slides left", 0, 0, 0, false, 0, {1200, 0, 1280, 300}, kGroupImage, {746, 0, 1280, 300}},
    {"slides down", 0, 0, 0, false, 0, {0, 0, 600, 10}, kGroupImage, {0, 0, 600, 338}},
    {"slides up", 0, 0, 0, false, 0, {0, 700, 600, 710}, kGroupImage, {0, 382, 600, 720}},
    {"as wide as the image", 0, 0, 0, false, 0, {0, 300, 1280, 310}, kGroupImage, {0, 0, 1280, 720}},
    // The head is cut to {300, 200, 0, 0}, the boundary {327, 200, -27, 0}; inverted, it always fits.
    {"no image", 10, 20, 10, true, 2, {300, 200, 900, 500}, {0, 0}, {362, 220, -65, -44}},
};

TEST(GroupFrame, SourceIsTheBoundaryWithBuffersInTheImage) {
  for (const SourceRow& row : kSourceRows) {
    SCOPED_TRACE(row.what);
    configure([&](PrConfig& c) {
      c.headBufSizeEachSide = 0;
      c.groupBoundaryEnable = row.enabled;
      c.groupBoundaryBufSizeTop = row.top;
      c.groupBoundaryBufSizeBottom = row.bottom;
      c.groupBoundaryBufSizeSide = row.side;
    });
    Frame frame;
    GroupFrame::updateGroupFrameLayout({row.head}, frame, "test", row.image, row.zoomLimit);
    EXPECT_EQ(frame.source, row.source);
    EXPECT_EQ(frame.detectionBoundary, GroupFrame::getGroupDetectionBoundary({row.head}, "test", row.image));
  }
}

TEST(GroupFrame, EmptyRoomIsReported) {
  CapturedLog log;
  EXPECT_EQ(GroupFrame::getGroupDetectionBoundary({}, "test", {3840, 2160}), Rect{});
  Frame frame;
  frame.detectionBoundary = {1, 2, 3, 4};
  GroupFrame::updateGroupFrameLayout({}, frame, "test", {3840, 2160}, 2);
  EXPECT_EQ(frame.source, (Rect{0, 0, 1280, 720}));
  EXPECT_EQ(frame.detectionBoundary, (Rect{1, 2, 3, 4}));
  EXPECT_EQ(log.lines(), (Lines{"E|PRB_GF|Group Boundary failed, room has no heads",
                                "E|PRB_GF|Group Frame failed, Applying ROOM View as a fallback"}));
}

TEST(GroupLayout, HoldsWhomTheCameraSees) {
  auto layout = std::make_shared<Layout>();
  layout->layoutType = FramingType::GROUP;
  layout->frames.resize(3);
  constructGroupLayout({person(7, {}, 2), person(3, {}, 1), person(5, {}, 2)}, layout, 2);
  ASSERT_EQ(layout->frames.size(), 1U);
  const Frame& frame = layout->frames.front();
  EXPECT_EQ(frame.heads, (Ids{105, 107}));
  EXPECT_EQ(frame.fynHeads, (Ids{5, 7}));
  EXPECT_EQ(frame.fynCamId, 2U);
  EXPECT_EQ(frame.frameType, FramingType::GROUP);
  EXPECT_EQ(frame.frameLayout, kFrameLayoutNone);
  EXPECT_TRUE(frame.headPositionTimer.expired);
  EXPECT_FALSE(frame.feedPriorityTimer.expired);
  EXPECT_EQ(frame.source, Rect{});

  constructGroupLayout({}, layout, 2);
  ASSERT_EQ(layout->frames.size(), 1U);
  EXPECT_EQ(layout->frames.front().heads, Ids{});
}

}  // namespace
}  // namespace fyn::productionrules
