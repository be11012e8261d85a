// When a new picture is decided: candidate, waiting layout, adopted layout.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

#include "layouts/group/GroupFramingLayout.h"
#include "layouts/group/GroupFramingTimerSetting.h"
#include "platform/ServiceState.h"
#include "platform/VisionSettings.h"
#include "tests/layouts/EngineRun.h"
#include "tests/layouts/OpenEngine.h"

namespace fyn::productionrules::testing {
namespace {

Scene people(int count) {
  Scene scene;
  for (int id = 1; id <= count; ++id) {
    scene.person(id).at(300 + 200 * id, 300);
  }
  return scene;
}

/** One vision result as the owner of an engine passes it on. */
bool feed(BaseLayout& engine, const Scene& scene) {
  const auto result = scene.mlData();
  engine.updatePeopleMap(result);
  return engine.applyingLayout(result);
}

std::string typeOf(const std::shared_ptr<Layout>& layout) {
  return layout != nullptr ? layoutToText(layout->layoutType) : "-";
}

struct Step {
  std::uint64_t ms;
  int people;
  bool adopted;
  const char* current;
  const char* waiting;
};

struct Script {
  const char* title;
  std::vector<Step> steps;
};

class BaseDecision : public ::testing::Test {
 protected:
  BaseDecision() {
    auto setting = std::make_shared<GroupFramingTimerSetting>();
    setting->gfToOtherLayoutChangeTimer = 2000;
    setting->roomToOtherLayoutChangeTimer = 1000;
    engine.setTimerSetting(setting);
  }

  EngineEnvironment env;
  OpenEngine<GroupFramingLayout> engine;
};

TEST_F(BaseDecision, ScriptsOfCandidatesAndWaits) {
  const std::vector<Script> scripts{
      {"the first layout is adopted at once", {{0, 0, true, "ROOM", "-"}}},
      {"a steady scene waits once",
       {{0, 1, true, "HEAD", "-"},
        {100, 2, false, "HEAD", "GROUP"},
        {1099, 2, false, "HEAD", "GROUP"},
        {1100, 2, true, "GROUP", "-"}}},
      {"more people in the waiting group do not restart the wait",
       {{0, 1, true, "HEAD", "-"},
        {100, 2, false, "HEAD", "GROUP"},
        {600, 3, false, "HEAD", "GROUP"},
        {1100, 4, true, "GROUP", "-"}}},
      {"a change that reverts is dropped",
       {{0, 1, true, "HEAD", "-"},
        {100, 2, false, "HEAD", "GROUP"},
        {900, 1, false, "HEAD", "-"},
        {1100, 2, false, "HEAD", "GROUP"},
        {2099, 2, false, "HEAD", "GROUP"},
        {2100, 2, true, "GROUP", "-"}}},
      {"a third scene restarts the wait",
       {{0, 1, true, "HEAD", "-"},
        {100, 2, false, "HEAD", "GROUP"},
        {900, 0, false, "HEAD", "ROOM"},
        {1100, 0, false, "HEAD", "ROOM"},
        {1900, 0, true, "ROOM", "-"}}},
      {"from a group to a group nothing waits and nothing changes",
       {{0, 2, true, "GROUP", "-"}, {100, 5, false, "GROUP", "-"}}},
      {"away from a group takes the group's wait",
       {{0, 2, true, "GROUP", "-"},
        {100, 1, false, "GROUP", "HEAD"},
        {2099, 1, false, "GROUP", "HEAD"},
        {2100, 1, true, "HEAD", "-"}}},
  };
  for (const Script& script : scripts) {
    engine.resetLayouts();
    const std::uint64_t start = env.environment.time.now();
    for (const Step& step : script.steps) {
      env.at(start + step.ms);
      EXPECT_EQ(feed(engine, people(step.people)), step.adopted) << script.title << " at " << step.ms;
      EXPECT_EQ(typeOf(engine.mState.mCurLayout), step.current) << script.title << " at " << step.ms;
      EXPECT_EQ(typeOf(engine.mState.mNextLayout), step.waiting) << script.title << " at " << step.ms;
    }
  }
}

/** Decides on the candidate that it is given. */
struct GivenCandidate : OpenEngine<GroupFramingLayout>, DecisionListener {
  GivenCandidate() { setDecisionListener(this); }
  std::shared_ptr<Layout> createLayout(const std::shared_ptr<MLData>& /*mlData*/) override {
    return candidate;
  }
  void onDecision(const LayoutDecision& decision) override { decisions.push_back(decision); }

  std::shared_ptr<Layout> candidate;
  std::vector<LayoutDecision> decisions;
};

struct DifferenceCase {
  std::function<void(Layout&)> change;
  LayoutDifference difference;
  std::int32_t frameIndex;
  /** What the log says of it; "" for nothing. */
  std::string log;
};

TEST_F(BaseDecision, ADecisionNamesTheDifferenceThatTheLogNames) {
  using What = LayoutDifference;
  const std::string kSame = "D|FramingUtil|isSameLayout ";
  const DifferenceCase cases[] = {
      {[](Layout& l) { l.layoutType = FramingType::PROXIMITY; }, What::LayoutType, -1,
       "D|FramingUtil|isDifferentLayout layout Types (HEAD --> PROXIMITY)are different, ret true"},
      {[](Layout& l) { l.frames.pop_back(); }, What::FrameCount, -1, ""},
      {[](Layout& l) { l.frames[1].dest.right = 600; }, What::Placement, 1, ""},
      {[](Layout& l) { l.frames[1].heads.insert(7); }, What::HeadCount, 1,
       kSame + "heads size diff For frame [1] a.size(1), b.size(2)"},
      {[](Layout& l) { l.frames[1].heads = {7}; }, What::Heads, 1,
       kSame + "head ids for this frame are different, new head 7 not found"},
      {[](Layout& l) {
         l.frames[0].fynCamId = 3;
         l.frames[1].heads = {7};
       },
       What::Camera, 0, kSame + "FynCamId are different for frame [0] a(0), b(3)"},
      {[](Layout& l) { l.frames[0].fynHeads = {7}; }, What::People, 0,
       kSame + "FynHeadId are different for frame [0] nDH not found [7]"},
  };
  for (const DifferenceCase& each : cases) {
    const std::vector<Frame> frames{frameOf(FramingType::HEAD, {}, {1}), frameOf(FramingType::HEAD, {}, {2})};
    GivenCandidate given;
    given.mState.mCurLayout = layoutOf(FramingType::HEAD, frames);
    given.candidate = layoutOf(FramingType::HEAD, frames);
    each.change(*given.candidate);
    env.environment.log.take();
    EXPECT_TRUE(feed(given, people(0)));
    ASSERT_EQ(given.decisions.size(), 2U) << "pending and adopted";
    for (const LayoutDecision& decision : given.decisions) {
      EXPECT_EQ(layoutDifferenceText(decision.difference),
                std::string(layoutDifferenceText(each.difference)));
      EXPECT_EQ(decision.frameIndex, each.frameIndex) << layoutDifferenceText(each.difference);
    }
    const Lines log = env.environment.log.take();
    EXPECT_EQ(std::count(log.begin(), log.end(), each.log), each.log.empty() ? 0 : 1) << each.log;
  }
}

struct ViewCase {
  FramingType type;
  const char* log;
  Rect source;
};

TEST_F(BaseDecision, EveryKindOfFrameHasItsView) {
  const Rect former{1, 2, 3, 4};
  const Rect group{355, 183, 859, 462};
  // Heads (450,240)-(750,360), buffered (375,210)-(825,390), 30 % below and 1 % above: 261 high, 464 wide.
  const Rect thirds{368, 207, 832, 468};
  const std::vector<ViewCase> cases{
      {FramingType::HEAD, "", thirds},
      {FramingType::PROXIMITY, "", thirds},
      {FramingType::LARGE_PROXIMITY, "E|BaseLayout|Unable to handle Frame Type: 2", former},
      {FramingType::GROUP, "", group},
      {FramingType::PARTIAL_GROUP, "", group},
      {FramingType::SUBSET_SPEAKER, "", group},
      {FramingType::ROOM, "", {0, 0, 1280, 720}},
      {FramingType::NONE, "E|BaseLayout|Unable to handle Frame Type: 7", former}};
  engine.updatePeopleMap(people(2).mlData());
  VisionSettings::setLogLevel(1);
  for (const ViewCase& kind : cases) {
    Frame frame = frameOf(kind.type, former, {1, 2});
    frame.frameLayout = kFrameLayoutHeadSingle;
    frame.dest = {0, 0, 1280, 720};
    frame.headPosition = HeadPosition::HEAD_OUTSIDE;
    engine.mState.mCurLayout = layoutOf(kind.type, {frame});
    env.environment.log.take();
    engine.updateLayoutViews(false);
    const Frame& seen = engine.mState.mCurLayout->frames.front();
    EXPECT_EQ(seen.source, kind.source) << layoutToText(kind.type);
    EXPECT_EQ(seen.headPosition, HeadPosition::CENTER);
    EXPECT_EQ(env.environment.log.take(), *kind.log != '\0' ? Lines{kind.log} : Lines{});
  }
}

TEST_F(BaseDecision, OnlyDueFramesAreFramedAnew) {
  env.at(5000);
  const Rect former{1, 2, 3, 4};
  std::vector<Frame> frames(4, frameOf(FramingType::ROOM, former));
  const std::uint32_t now = 1005000;
  frames[0].headPositionTimer = getTimer(1000, now - 1000);
  frames[1].headPositionTimer = getTimer(1000, now - 999);
  frames[2].feedPriorityTimer = getTimer(10, now - 10);
  engine.mState.mCurLayout = layoutOf(FramingType::ROOM, frames);
  engine.updateLayoutViews(true);
  const std::vector<bool> due{true, false, true, false};
  for (std::size_t i = 0; i < due.size(); ++i) {
    EXPECT_EQ(engine.mState.mCurLayout->frames[i].source != former, due[i]) << i;
  }
  EXPECT_TRUE(engine.mState.mCurLayout->frames[1].headPositionTimer.isStarted());
  const Lines lines = env.environment.log.take();
  EXPECT_EQ(lines.back(),
            "D|BaseLayout|updateLayoutViews() timer didn't expire for frameType: ROOM , skipping the frame");
  // A layout without frames and no layout at all only log, if that.
  engine.mState.mCurLayout = layoutOf(FramingType::GROUP);
  engine.updateLayoutViews(false);
  EXPECT_EQ(env.environment.log.take(),
            (Lines{"D|BaseLayout|updateLayoutViews() layoutType: GROUP frame size: 0 heads: -1 mlSize: 0"}));
  engine.mState.mCurLayout = nullptr;
  engine.updateLayoutViews(false);
  EXPECT_EQ(env.environment.log.take(), Lines{});
}

TEST_F(BaseDecision, TheSidesOfAPlaceWrap) {
  engine.updatePeopleMap(people(1).mlData());
  const auto viewAt = [this](const Rect& dest) {
    Frame frame = frameOf(FramingType::HEAD, {}, {1});
    frame.frameLayout = kFrameLayoutHeadSingle;
    frame.dest = dest;
    engine.calculateRuleOfThirdFor(frame);
    return frame.source;
  };
  EXPECT_EQ(viewAt({-2147483647, 0, 2147483647, 720}), viewAt({0, 0, -2, 720}));
  EXPECT_EQ(viewAt({0, 2147483647, 1280, -2147483647}), viewAt({0, 0, 1280, 2}));
}

TEST_F(BaseDecision, PeopleCountIsPublishedOnChangeAndEvery5000Ms) {
  const auto asks = [this](std::uint64_t ms, int count) {
    env.at(ms);
    const auto result = people(count).mlData();
    const bool publishes = engine.shouldPublishUpdatedPeopleCount(result);
    engine.updatePeopleMap(result);
    return publishes;
  };
  EXPECT_TRUE(asks(0, 0)) << "nothing was ever published";
  EXPECT_FALSE(asks(4999, 0));
  EXPECT_TRUE(asks(4999, 2)) << "a change";
  EXPECT_TRUE(asks(5000, 2)) << "the change has not moved the period";
  OpenEngine<GroupFramingLayout> other;
  EXPECT_FALSE(other.shouldPublishUpdatedPeopleCount(people(0).mlData())) << "one period for all engines";
  EXPECT_FALSE(asks(9999, 2));
  EXPECT_TRUE(asks(10000, 2));
  // The clock of 32 bits begins again: 4293967296 ms after the start of the test it reads 0.
  ServiceState::current().times.lastPeopleCountSend = 4294967295U;
  EXPECT_TRUE(asks(4293967296, 2));
  EXPECT_EQ(ServiceState::current().times.lastPeopleCountSend, 0U);
  EXPECT_FALSE(asks(4293967296 + 4999, 2));
}

struct BoxCase {
  const char* title;
  std::set<std::int64_t> persons;
  FramingType type;
  bool buffered;
  bool found;
  Rect box;
  std::string log;
};

TEST_F(BaseDecision, BoxAroundTheHeadsOfAFrame) {
  const Scene seen = peopleAt("1@500 2@700").person(3).camera(5).at(9, 9).person(4).headId(44).box({});
  engine.updatePeopleMap(seen.mlData());
  env.environment.log.take();
  const Rect kept{-1, -2, -3, -4};
  constexpr FramingType kAlone = FramingType::HEAD;
  constexpr FramingType kShared = FramingType::PROXIMITY;
  const std::string error = "E|BaseLayout|constructBoundingBox: ";
  const std::vector<BoxCase> cases{
      {"two heads", {1, 2}, kAlone, true, true, {450, 240, 750, 360}, ""},
      {"with buffers, a proximity frame", {1, 2}, kShared, true, true, {425, 210, 775, 390}, ""},
      {"without buffers", {1, 2}, kShared, false, true, {450, 240, 750, 360}, ""},
      {"nobody",
       {},
       kAlone,
       false,
       true,
       kept,
       "W|TVPR_COMMON|getBoundaries heads are empty, returning false"},
      {"somebody who has left", {1, 9}, kAlone, false, false, kept, ""},
      {"seen by another camera",
       {1, 3},
       kAlone,
       false,
       false,
       kept,
       error + "HEAD  3 NOT IN CAMERA 0, why did this not get caught by layout change?"},
      {"a head without a box",
       {4},
       kAlone,
       false,
       false,
       kept,
       error + "FynHead:4, associatec camID: 0 's headID 44 BOUND [0,0,0,0]"}};
  for (const BoxCase& one : cases) {
    Rect box = kept;
    EXPECT_EQ(engine.constructBoundingBox(frameOf(one.type, {}, one.persons), box, one.buffered), one.found)
        << one.title;
    EXPECT_EQ(box, one.box) << one.title;
    EXPECT_EQ(env.environment.log.take(), !one.log.empty() ? Lines{one.log} : Lines{}) << one.title;
  }
  // Looking where such a subject stands reports it once.
  EXPECT_EQ(engine.getHeadPosition(frameOf(FramingType::HEAD, {}, {3})), HeadPosition::CENTER);
  EXPECT_EQ(env.environment.log.take().size(), 1U);
}

}  // namespace
}  // namespace fyn::productionrules::testing
