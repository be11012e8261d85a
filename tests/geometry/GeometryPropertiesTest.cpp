#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <random>

#include "config/ConfigKeys.h"
#include "geometry/FramePredicates.h"
#include "geometry/GroupFrame.h"
#include "geometry/HeadBuffer.h"
#include "geometry/OffCenter.h"
#include "geometry/Overlap.h"
#include "geometry/ProximityRect.h"
#include "geometry/RuleOfThirds.h"
#include "tests/geometry/GeometryTesting.h"
#include "tests/testing/CapturedLog.h"

namespace fyn::productionrules {
namespace {

using testing::configure;

constexpr Dimension kImage{1920, 1080};
constexpr Rect kWhole{0, 0, 1920, 1080};
constexpr int kRounds = 20000;

/** Rectangles from a fixed seed: the same ones in every run. */
class RandomRects {
 public:
  /** A head of 1 to 300 pixels that lies in the image. */
  Rect head() {
    const int width = below(300) + 1;
    const int height = below(300) + 1;
    const int left = below(kImage.width - width + 1);
    const int top = below(kImage.height - height + 1);
    return {left, top, left + width, top + height};
  }

  std::int32_t extreme() {
    constexpr std::int32_t kMin = std::numeric_limits<std::int32_t>::min();
    constexpr std::int32_t kMax = std::numeric_limits<std::int32_t>::max();
    constexpr std::int32_t kNumbers[] = {
        kMin,  kMin + 1, -2147483520, -65536,     -101,       -100,     -99, -1,   0,
        1,     2,        3,           98,         99,         100,      101, 1280, 65535,
        65536, 16777217, 1073741823,  1073741824, 2147483520, kMax - 1, kMax};
    return kNumbers[below(static_cast<int>(std::size(kNumbers)))];
  }

  Rect hostile() { return {extreme(), extreme(), extreme(), extreme()}; }

  FrameLayout shape() { return static_cast<FrameLayout>(below(kFrameLayoutNone)); }

  int below(int limit) { return static_cast<int>(mEngine() % static_cast<unsigned>(limit)); }

 private:
  std::mt19937 mEngine{20240607};
};

bool lies(const Rect& inner, const Rect& outer) {
  return !isGFMoveAway(outer, inner);
}

TEST(GeometryProperties, RuleOfThirdsFrameLiesInTheImage) {
  RandomRects random;
  for (int i = 0; i < kRounds; ++i) {
    const Rect box = random.head();
    const Rect frame = getRuleOfThirdFrame(box, 1280, 720, random.shape(), kImage, random.below(6));
    ASSERT_TRUE(lies(frame, kWhole)) << ::testing::PrintToString(box) << ::testing::PrintToString(frame);
    ASSERT_LE(frame.left, frame.right);
    ASSERT_LT(frame.top, frame.bottom);
  }
}

TEST(GeometryProperties, GroupFrameLiesInTheImageAndHoldsTheHeads) {
  RandomRects random;
  std::vector<Rect> heads;
  Frame frame;
  int partial = 0;
  for (int i = 0; i < kRounds; ++i) {
    heads.clear();
    for (int count = random.below(4); count >= 0; --count) {
      heads.push_back(random.head());
    }
    GroupFrame::updateGroupFrameLayout(heads, frame, "test", kImage, 0);
    ASSERT_TRUE(lies(frame.source, kWhole)) << ::testing::PrintToString(frame.source);
    for (const Rect& head : heads) {
      ASSERT_TRUE(lies(head, frame.source))
          << ::testing::PrintToString(head) << ::testing::PrintToString(frame.source);
    }
    partial += static_cast<int>(frame.source != kWhole);
  }
  EXPECT_GT(partial, 0);
}

/** Every setting takes an extreme number. */
void makeHostile(PrConfig& config, RandomRects& random) {
  for (const ConfigKey& row : kConfigKeys) {
    setConfigValue(config, row, random.extreme());
  }
}

// The sanitizers watch for arithmetic that is not defined; what is checked holds for any numbers at all.
TEST(GeometryProperties, HostileNumbersAreDefined) {
  const testing::CapturedLog quiet(0);
  RandomRects random;
  Frame frame;
  for (int i = 0; i < kRounds; ++i) {
    configure([&](PrConfig& config) {
      if (i % 2 == 1) {
        makeHostile(config, random);
      }
    });
    const Rect a = random.hostile();
    const Rect b = random.hostile();
    const Dimension image = i % 3 == 0 ? kImage : Dimension{random.extreme(), random.extreme()};
    const std::int32_t limit = random.extreme();
    const FrameLayout shape = random.shape();

    ASSERT_EQ(isInProximity(a, b), isInProximity(b, a));
    ASSERT_EQ(getOverlappingArea(a, b), getOverlappingArea(b, a));
    ASSERT_GE(getOverlappingArea(a, b), 0.0);
    ASSERT_GE(calculateArea(a), 0.0);
    ASSERT_EQ(isCenter(a, b), isCenter(b, a));
    ASSERT_EQ(calculateOffcenterFrameBound(a, shape).top, a.top);
    ASSERT_GE(getHeadBufferRect(a, image).left, 0);
    ASSERT_LE(getHeadBufferRect(a, image).bottom, image.height);
    ASSERT_GE(getProxTriggerRect(a, image).top, 0);
    ASSERT_LE(getProxTriggerRect(a, image).right, image.width);
    ASSERT_LE(getRuleOfThirdFrame(a, random.extreme(), random.extreme(), shape, image, limit).bottom,
              image.height);
    GroupFrame::updateGroupFrameLayout({a, b}, frame, "test", image, limit);
    ASSERT_LE(frame.source.bottom, image.height);
    ASSERT_EQ(isOnFrameEdge(a, a), false);
    isGFMoveClose(a, b);
    isInProximity(a, b, limit);
    getSizeDelta(a, b);
    getProximitySquare(a, image);
    isOffCenter(a, b, shape);
  }
}

}  // namespace
}  // namespace fyn::productionrules
