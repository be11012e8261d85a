// How long a change waits and how it is shown: layout changes, reframes, transitions.
#include <gtest/gtest.h>

#include "layouts/group/GroupFramingLayout.h"
#include "layouts/group/GroupFramingTimerSetting.h"
#include "layouts/group/PrimaryGroupLayout.h"
#include "layouts/group/SecondaryGroupLayout.h"
#include "layouts/streams/MultiStreamGroupFramingLayout.h"
#include "tests/layouts/OpenEngine.h"

namespace fyn::productionrules::testing {
namespace {

constexpr Rect kThirds{408, 207, 872,
                       468};  // of a head at (640,300); its off-centre bound is (500,207)-(779,441)
constexpr Rect kGroup{355, 183, 859, 462};  // of heads at (500,300) and (700,300)
constexpr Rect kGroupBoundary{425, 202, 775, 398};

std::shared_ptr<GroupFramingTimerSetting> distinctWaits() {
  auto setting = std::make_shared<GroupFramingTimerSetting>();
  setting->gfMoveCloseTimer = 104;
  setting->gfHeadLeft = 105;
  setting->gfHeadOnEdge = 106;
  setting->gfHeadOutside = 107;
  setting->onFrameEdgeTimer = 100;
  setting->offCenterTimer = 101;
  setting->outsideFrameTimer = 102;
  setting->gfToOtherLayoutChangeTimer = 200;
  setting->roomToOtherLayoutChangeTimer = 300;
  return setting;
}

class BaseTimers : public ::testing::Test {
 protected:
  EngineEnvironment env;
};

TEST_F(BaseTimers, LayoutChangeWaits) {
  using T = FramingType;
  OpenEngine<GroupFramingLayout> group;
  OpenEngine<PrimaryGroupLayout> primary;
  const std::vector<T> types{T::HEAD,  T::PROXIMITY,     T::LARGE_PROXIMITY,
                             T::GROUP, T::PARTIAL_GROUP, T::SUBSET_SPEAKER,
                             T::ROOM,  T::NONE};
  const auto check = [&](auto& engine) {
    engine.setTimerSetting(distinctWaits());
    EXPECT_EQ(engine.getLayoutChangeTimer(T::GROUP, true), 0U) << "without a layout";
    EXPECT_EQ(engine.getWaitTime(layoutOf(T::GROUP), true), 0U) << "without a layout";
    for (const T current : types) {
      engine.mState.mCurLayout = layoutOf(current);
      for (const T next : types) {
        const unsigned wait = current == next ? 0 : current == T::GROUP ? 200 : 300;
        for (const bool countChanged : {false, true}) {
          EXPECT_EQ(engine.getWaitTime(layoutOf(next), countChanged), wait)
              << layoutToText(current) << " to " << layoutToText(next);
        }
      }
    }
  };
  check(group);
  check(primary);
}

struct EngineCase {
  const char* tag;
  std::shared_ptr<BaseLayout> engine;
  bool singleHeads;  // has waits of its own for single heads
  bool alwaysCuts;
  unsigned zoomLimit;   // with the limit at 3
  unsigned zoomLimit5;  // on a camera of type 5
};

std::vector<EngineCase> engines() {
  return {
      {"BaseLayout", std::make_shared<BaseLayout>(), false, false, 0, 0},
      {"GroupFramingLayout", std::make_shared<GroupFramingLayout>(), true, true, 3, 0},
      {"MultiStreamGroupFramingLayout", std::make_shared<MultiStreamGroupFramingLayout>(), true, true, 3, 0},
      {"PrimaryGroupLayout", std::make_shared<PrimaryGroupLayout>(), true, false, 3, 3},
      {"BaseSecondaryLayout", std::make_shared<BaseSecondaryLayout>(), false, false, 0, 0},
      {"SecondaryGroupLayout", std::make_shared<SecondaryGroupLayout>(), false, false, 3, 3}};
}

TEST_F(BaseTimers, EnginesDifferInTheseRows) {
  const std::vector<unsigned> waits{100, 101, 102, 0, 104, 105, 106, 107, 0};
  for (const EngineCase& row : engines()) {
    SCOPED_TRACE(row.tag);
    BaseLayout& engine = *row.engine;
    EXPECT_STREQ(engine.getTag(), row.tag);
    engine.setTimerSetting(distinctWaits());
    for (std::size_t position = 0; position < waits.size(); ++position) {
      const auto where = static_cast<HeadPosition>(position);
      const bool single = position <= 3;
      env.environment.log.take();
      EXPECT_EQ(engine.getWaitTimeFor(where), single && !row.singleHeads ? 0 : waits[position]) << position;
      EXPECT_EQ(env.environment.log.take(),
                single && !row.singleHeads
                    ? Lines{"I|BaseLayout|getWaitTimeForOtherCase() KORVALDEBUG head position " +
                            headPositionInString(where) + " WE SHUDNT COME HERE! "}
                    : Lines{});
      EXPECT_EQ(engine.getReframeAnimation(where), "cut");
    }
    for (const bool cutOnly : {false, true}) {
      env.config.animationCutOnly = cutOnly;
      PrConfig::set(env.config);
      EXPECT_EQ(engine.getLayoutChangeAnimation(), cutOnly || row.alwaysCuts ? "cut" : "dissolve");
    }
    env.config.zoomInLimit = 3;
    for (const bool limited : {false, true}) {
      env.config.gfZoomLimitEnabled = limited;
      PrConfig::set(env.config);
      for (const int cameraType : {-1, 4, 5}) {
        FynCamerasConfig::getMutable().cameraType.reset();
        if (cameraType >= 0) {
          FynCamerasConfig::getMutable().cameraType = cameraType;
        }
        EXPECT_EQ(engine.getMaxScaleFactor(), !limited          ? 0
                                              : cameraType == 5 ? row.zoomLimit5
                                                                : row.zoomLimit)
            << cameraType;
      }
    }
  }
}

TEST_F(BaseTimers, TransitionsLastAsConfigured) {
  env.config.cutAnimationDuration = 1;
  env.config.dissolveAnimationDuration = 2;
  env.config.easeAnimationDuration = 3;
  PrConfig::set(env.config);
  BaseLayout engine;
  const std::vector<std::pair<const char*, unsigned>> rows{
      {"cut", 1}, {"dissolve", 2}, {"ease", 3}, {"", 0}, {"Cut", 0}};
  for (const auto& [name, duration] : rows) {
    EXPECT_EQ(engine.getLayoutChangeDuration(name), duration) << name;
  }
  EXPECT_EQ(engine.getReframeAnimationDuration(HeadPosition::HEAD_OUTSIDE), 1U);
}

struct PositionCase {
  const char* title;
  Scene scene;
  HeadPosition position;
};

TEST_F(BaseTimers, WhereASingleHeadStands) {
  using P = HeadPosition;
  const auto at = [](int x, int y) { return scene().person(1).at(x, y); };
  const std::vector<PositionCase> cases{{"in the centre", at(640, 300), P::CENTER},
                                        {"one pixel inside the bound", at(551, 300), P::CENTER},
                                        {"touches the bound from inside", at(550, 300), P::HEAD_OFF_CENTER},
                                        {"across the bound's side", at(540, 300), P::HEAD_OFF_CENTER},
                                        {"across the bound's bottom", at(640, 400), P::HEAD_OFF_CENTER},
                                        {"across the frame's side", at(430, 300), P::HEAD_ON_EDGE},
                                        {"across the frame's bottom", at(640, 430), P::HEAD_ON_EDGE},
                                        {"touches the frame from outside", at(358, 300), P::HEAD_OFF_CENTER},
                                        {"outside", at(357, 300), P::HEAD_OUTSIDE},
                                        {"gone", scene().person(2).at(640, 300), P::CENTER}};
  Frame frame = frameOf(FramingType::HEAD, kThirds, {1});
  frame.frameLayout = kFrameLayoutHeadSingle;
  Frame together = frameOf(FramingType::PROXIMITY, kThirds, {1});
  OpenEngine<GroupFramingLayout> engine;
  for (const PositionCase& one : cases) {
    engine.updatePeopleMap(one.scene.mlData());
    EXPECT_EQ(engine.getCurrentHeadPosition(frame), one.position) << one.title;
    // A frame of a cluster has no off-centre bound.
    const P clustered = one.position == P::HEAD_OFF_CENTER ? P::CENTER : one.position;
    EXPECT_EQ(engine.getCurrentHeadPosition(together), clustered) << one.title;
    // Nothing moves in a room, and a cluster that has come apart waits for another layout.
    EXPECT_EQ(engine.getCurrentHeadPosition(frameOf(FramingType::ROOM, kThirds, {1})), P::CENTER);
    EXPECT_EQ(engine.getCurrentHeadPosition(frameOf(FramingType::PROXIMITY, kThirds, {1, 2})), P::CENTER);
  }
}

TEST_F(BaseTimers, WhereAGroupStands) {
  using P = HeadPosition;
  const auto two = [](int x1, int x2) { return scene().person(1).at(x1, 300).person(2).at(x2, 300); };
  const std::vector<PositionCase> cases{
      {"as framed", two(500, 700), P::CENTER},
      {"one outside", two(250, 700), P::GROUP_HEAD_OUTSIDE},
      {"one on the edge", two(400, 700), P::GROUP_HEAD_ON_EDGE},
      {"one outside, one on the edge", two(1000, 400), P::GROUP_HEAD_OUTSIDE},
      {"one has left", scene().person(1).at(500, 300), P::GROUP_HEAD_LEFT},
      {"one has left, the other is on the edge", scene().person(1).at(400, 300), P::GROUP_HEAD_ON_EDGE},
      {"one has gone to another camera", scene().person(1).at(500, 300).person(2).camera(1).at(700, 300),
       P::GROUP_HEAD_LEFT},
      {"a third has come", two(500, 700).person(3).at(600, 300), P::CENTER},
      // Boundary 320 x 180 = 57600 against 80 % of 350 x 196 = 54880: not close enough.
      {"a little closer", two(580, 620), P::CENTER},
      {"closer", scene().person(1).at(580, 300).sized(60, 80).person(2).at(620, 300).sized(60, 80),
       P::GROUP_MOVE_CLOSE},
      {"all have left", scene(), P::GROUP_HEAD_LEFT}};
  OpenEngine<GroupFramingLayout> engine;
  Frame frame = frameOf(FramingType::GROUP, kGroup, {1, 2});
  frame.detectionBoundary = kGroupBoundary;
  for (const PositionCase& one : cases) {
    for (const FramingType type : {FramingType::GROUP, FramingType::SUBSET_SPEAKER}) {
      frame.frameType = type;
      engine.updatePeopleMap(one.scene.mlData());
      EXPECT_EQ(engine.getCurrentHeadPosition(frame), one.position) << one.title;
    }
  }
  env.environment.log.take();
  EXPECT_EQ(engine.getCurrentHeadPosition(frameOf(FramingType::GROUP, kGroup)), P::CENTER);
  EXPECT_EQ(env.environment.log.take(),
            (Lines{"W|BaseLayout|getGroupHeadPosition heads are empty, returning head position CENTER"}));
}

TEST_F(BaseTimers, WaitOfMinusOneIsNeverStarted) {
  OpenEngine<GroupFramingLayout> engine;
  auto waits = distinctWaits();
  waits->gfHeadOnEdge = kInvalidTimer;
  engine.setTimerSetting(waits);
  engine.mState.mCurLayout = layoutOf(FramingType::GROUP, {frameOf(FramingType::GROUP, kGroup)});
  engine.updatePeopleMap(scene().person(1).at(400, 300).mlData());
  for (const std::uint64_t ms : {0U, 100000U}) {
    env.at(ms);
    EXPECT_FALSE(engine.updateLayoutFraming());
    EXPECT_EQ(engine.mState.mCurLayout->frames.front().headPosition, HeadPosition::GROUP_HEAD_ON_EDGE);
    EXPECT_FALSE(engine.mState.mCurLayout->frames.front().headPositionTimer.isStarted());
  }
}

TEST_F(BaseTimers, ClockIsReplaceable) {
  OpenEngine<GroupFramingLayout> engine;
  std::uint32_t ticks = 4294967290U;
  engine.setCurrentTimerTickFun([&ticks] { return ticks; });
  engine.setTimerSetting(distinctWaits());
  engine.mState.mCurLayout = layoutOf(FramingType::ROOM);
  const auto result = scene().person(1).at(640, 300).mlData();
  engine.updatePeopleMap(result);
  EXPECT_FALSE(engine.applyingLayout(result));
  ticks = 293;
  EXPECT_FALSE(engine.applyingLayout(result)) << "299 ms over the wrap of the clock";
  ticks = 294;
  EXPECT_TRUE(engine.applyingLayout(result));
  engine.setCurrentTimerTickFun({});
  EXPECT_THROW(engine.applyingLayout(scene().mlData()), std::bad_function_call);
}

}  // namespace
}  // namespace fyn::productionrules::testing
