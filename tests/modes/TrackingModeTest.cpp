// How a tracking mode drives its engine and what it publishes.
#include <gtest/gtest.h>

#include "config/PrConfig.h"
#include "layouts/group/GroupFramingTimerSetting.h"
#include "layouts/people/PeopleFrameTimerSetting.h"
#include "model/FynCamerasConfig.h"
#include "modes/GroupTrackingMode.h"
#include "modes/MultiStreamTrackingMode.h"
#include "modes/PeopleFramingMode.h"
#include "modes/SpeakerFramingMode.h"
#include "tests/modes/FakeEngine.h"
#include "tests/testing/SceneBuilder.h"
#include "tests/testing/TestEnvironment.h"

namespace fyn::productionrules::testing {
namespace {

using Lines = std::vector<std::string>;

std::shared_ptr<Layout> layoutOf(FramingType type) {
  auto layout = std::make_shared<Layout>();
  layout->layoutType = type;
  return layout;
}

class TrackingMode : public ::testing::Test {
 protected:
  TrackingMode() {
    config.prPollTimerThreshold = 0;
    config.fynDebugEnabled = true;
    PrConfig::set(config);
    engine->mState.mCurLayout = layoutOf(FramingType::HEAD);
    // No periodic people count while a test runs.
    ServiceState::current().times.lastPeopleCountSend = 1000000;
  }

  TestEnvironment environment;
  PrConfig config;
  FakeNotifier notifier;
  std::shared_ptr<FakeEngine> engine = std::make_shared<FakeEngine>();
};

struct ProcessCase {
  bool applies, pending, feedChanges, reframes;
  const char* calls;
  bool result;
};

TEST_F(TrackingMode, StopsAskingAtTheFirstChange) {
  const std::vector<ProcessCase> cases{{false, false, false, false, "map apply feed frame ", false},
                                       {true, false, true, true, "map apply ", true},
                                       {false, true, true, true, "map apply ", true},
                                       {false, false, true, true, "map apply feed ", true},
                                       {false, false, false, true, "map apply feed frame ", true}};
  for (const ProcessCase& one : cases) {
    GroupTrackingMode mode(notifier, engine);
    if (one.pending) {
      mode.setSecondaryLayout({layoutOf(FramingType::GROUP)});
    }
    engine->applies = one.applies;
    engine->feedChanges = one.feedChanges;
    engine->reframes = one.reframes;
    engine->calls.clear();
    notifier.take();
    EXPECT_EQ(mode.process(scene().mlData()), one.result) << one.calls;
    EXPECT_EQ(engine->calls, one.calls);
    EXPECT_EQ(notifier.take(), one.result ? Lines{"timers 0 1"} : Lines{});
  }
}

TEST_F(TrackingMode, TimerDocumentsEvery1001TicksWhileATimerRuns) {
  GroupTrackingMode mode(notifier, engine);
  PeopleFramingMode another(notifier, engine);
  const auto sends = [&](BaseTrackingMode& asked, std::uint64_t ms) {
    environment.time.advanceTo(ms);
    notifier.take();
    EXPECT_FALSE(asked.process(scene().mlData()));
    const Lines sent = notifier.take();
    return !sent.empty() && sent.back().rfind("timers", 0) == 0;
  };
  EXPECT_FALSE(sends(mode, 0));
  engine->timerRuns = true;
  EXPECT_TRUE(sends(mode, 1));
  EXPECT_FALSE(sends(mode, 1001));
  EXPECT_FALSE(sends(another, 1001)) << "one period for all modes";
  EXPECT_TRUE(sends(mode, 1002));
  // Over the wrap of the 32-bit clock, which reads 0 at 4293967296.
  EXPECT_TRUE(sends(mode, 4293967000));
  EXPECT_FALSE(sends(mode, 4293968000));
  EXPECT_TRUE(sends(mode, 4293968001));
  config.fynDebugEnabled = false;
  PrConfig::set(config);
  EXPECT_FALSE(sends(mode, 4293990000)) << "only with debugging on";
}

TEST_F(TrackingMode, PeopleCountWithTheSmallestHead) {
  struct Case {
    Scene scene;
    const char* sent;
  };
  const std::vector<Case> cases{
      {scene().person(1).at(100, 100).sized(50, 90).person(2).at(300, 100).sized(50, 80), "people 2 80"},
      {scene(), "people 0 1280"},
      {scene().person(1).at(500, 1000).sized(10, 1281), "people 1 1280"},
      // The head in the first camera counts.
      {scene().person(1).camera(2).at(9, 9).sized(9, 20).camera(1).at(9, 9).sized(9, 30).person(2).at(5, 500),
       "people 2 30"},
      {scene().person(1).box({0, 50, 10, 20}), "people 1 4294967266"}};
  GroupTrackingMode mode(notifier, engine);
  for (const Case& one : cases) {
    notifier.take();
    mode.process(one.scene.mlData());
    EXPECT_EQ(notifier.take(), Lines{one.sent});
    // Not again until the number changes.
    mode.process(one.scene.mlData());
    EXPECT_EQ(notifier.take(), Lines{});
  }
}

TEST_F(TrackingMode, SendingALayout) {
  struct Case {
    const char* title;
    bool beta;
    std::shared_ptr<Layout> layout;
    Lines sent;
    const char* warning;
  };
  const auto full = layoutOf(FramingType::GROUP);
  full->frames.resize(1);
  const std::vector<Case> cases{
      {"a layout", true, full, {"layout GROUP GroupFraming"}, ""},
      {"no frames", false, layoutOf(FramingType::ROOM), {"layout ROOM GroupFraming"}, ""},
      {"no frames, beta",
       true,
       layoutOf(FramingType::ROOM),
       {},
       "W|BaseTrackingMode|sendLayout: layout has no frames"},
      {"no layout", false, nullptr, {}, "W|BaseTrackingMode|sendLayout: getLayoutPtr returned null"}};
  for (const Case& one : cases) {
    config.fpBeta1Enabled = one.beta;
    PrConfig::set(config);
    GroupTrackingMode mode(notifier, engine);
    mode.setSecondaryLayout({full});
    EXPECT_TRUE(mode.isLayoutPending());
    engine->mState.mCurLayout = one.layout;
    environment.log.take();
    mode.sendLayout(false);
    EXPECT_EQ(notifier.take(), one.sent) << one.title;
    Lines lines{"D|BaseTrackingMode|sendLayout: Sending layout not null"};
    if (*one.warning != '\0') {
      lines.emplace_back(one.warning);
    }
    EXPECT_EQ(environment.log.take(), lines) << one.title;
    EXPECT_FALSE(mode.isLayoutPending()) << one.title;
  }
}

TEST_F(TrackingMode, OnlyTheFirstAcceptedSecondaryLayoutCounts) {
  GroupTrackingMode mode(notifier, engine);
  mode.setSecondaryLayout({});
  EXPECT_FALSE(mode.isLayoutPending());
  engine->acceptsSecondary = false;
  mode.setSecondaryLayout({layoutOf(FramingType::HEAD), layoutOf(FramingType::GROUP)});
  EXPECT_FALSE(mode.isLayoutPending());
  engine->acceptsSecondary = true;
  mode.setSecondaryLayout({nullptr, layoutOf(FramingType::GROUP)});
  EXPECT_TRUE(mode.isLayoutPending());
  ASSERT_EQ(engine->secondary.size(), 2U);
  EXPECT_EQ(engine->secondary[1], nullptr);
}

/** A mode whose engine a test may take away. */
struct Engineless final : BaseTrackingMode {
  using BaseTrackingMode::BaseTrackingMode;
  void checkAndSetSystemTimers() override {}
  FramingMode getTrackingMode() override { return FramingMode::GroupFraming; }
};

TEST_F(TrackingMode, WithoutAnEngineNothingHappens) {
  Engineless mode(notifier);
  mode.updateTrackingModeLayout(FynOperatingMode::Primary, nullptr);
  environment.log.take();
  EXPECT_FALSE(mode.process(scene().mlData()));
  EXPECT_EQ(environment.log.take(), Lines{"W|BaseTrackingMode|KORVALDEBUG process: layout is null"});
  mode.sendLayout(false);
  EXPECT_EQ(environment.log.take(), Lines{"D|BaseTrackingMode|sendLayout: Sending layout null"});
  mode.sendPeopleCountInfo();
  mode.sendDebugTimerInfo(nullptr);
  mode.resetLayouts();
  mode.setLayoutAnimationToCut();
  mode.setSecondaryLayout({layoutOf(FramingType::HEAD)});
  EXPECT_EQ(mode.getDebugDataInJson(), "");
  EXPECT_TRUE(mode.getSceneRects().empty());
  EXPECT_FALSE(mode.isLayoutPending());
  EXPECT_EQ(notifier.take(), Lines{});
  EXPECT_EQ(mode.getName(), "BaseTrackingMode");
}

TEST_F(TrackingMode, EngineOfEveryRole) {
  struct Case {
    std::shared_ptr<BaseTrackingMode> mode;
    const char* name;
    int framingMode;
    std::vector<const char*> tags;
  };
  const std::vector<Case> cases{
      {std::make_shared<GroupTrackingMode>(notifier),
       "GroupTrackingMode",
       1,
       {"GroupFramingLayout", "PrimaryGroupLayout", "SecondaryGroupLayout"}},
      {std::make_shared<PeopleFramingMode>(notifier),
       "PeopleFramingMode",
       4,
       {"PeopleFramingLayout", "PrimaryPeopleLayout", "SecondaryPeopleLayout"}},
      {std::make_shared<SpeakerFramingMode>(notifier),
       "SpeakerFramingMode",
       2,
       {"BaseLayout", "PrimarySpeakerLayout", "SecondarySpeakerLayout"}},
      {std::make_shared<MultiStreamTrackingMode>(notifier),
       "BaseTrackingMode",
       5,
       {"MultiStreamFramingLayout", "MultiStreamFramingLayout", "MultiStreamFramingLayout"}}};
  for (const Case& one : cases) {
    EXPECT_EQ(one.mode->getName(), one.name);
    EXPECT_EQ(static_cast<int>(one.mode->getTrackingMode()), one.framingMode);
    EXPECT_STREQ(one.mode->getFramingLayout()->getTag(), one.tags[0]) << "from the start";
    for (std::size_t role = 0; role < one.tags.size(); ++role) {
      const auto former = one.mode->getFramingLayout();
      environment.log.take();
      one.mode->updateTrackingModeLayout(static_cast<FynOperatingMode>(role), nullptr);
      EXPECT_STREQ(one.mode->getFramingLayout()->getTag(), one.tags[role]);
      EXPECT_NE(one.mode->getFramingLayout(), former) << "always a fresh one";
      if (one.framingMode == 4) {
        EXPECT_EQ(environment.log.take().front(),
                  "I|PeopleFramingMode|makeLayout: setting FynOpMode " + std::to_string(role));
      }
    }
    const auto current = one.mode->getFramingLayout();
    EXPECT_EQ(one.mode->makeLayout(static_cast<FynOperatingMode>(3)) == current, one.framingMode != 5);
    one.mode->updateTrackingModeLayout(FynOperatingMode::Standalone, engine);
    EXPECT_EQ(one.mode->getFramingLayout(), engine);
  }
}

TEST_F(TrackingMode, WaitsAreRefreshedOncePerPeriodWhileResultsArrive) {
  const auto refreshes = [&](BaseTrackingMode& mode, std::uint64_t ms) {
    environment.time.advanceTo(ms);
    engine->calls.clear();
    mode.process(scene().mlData());
    return engine->calls.find("setting") != std::string::npos;
  };
  GroupTrackingMode never(notifier, engine);
  EXPECT_FALSE(refreshes(never, 100000));
  config.prPollTimerThreshold = 2000;
  PrConfig::set(config);
  GroupTrackingMode mode(notifier, engine);
  EXPECT_TRUE(refreshes(mode, 100000)) << "never refreshed yet";
  EXPECT_FALSE(refreshes(mode, 102000)) << "exactly the period";
  EXPECT_TRUE(refreshes(mode, 102001));
  EXPECT_FALSE(refreshes(mode, 102002));
  EXPECT_FALSE(refreshes(never, 200000)) << "the period is that of the start";
}

TEST_F(TrackingMode, RefreshInstallsTheKindOfSettingOfTheMode) {
  GroupTrackingMode group(notifier, engine);
  group.checkAndSetSystemTimers();
  EXPECT_NE(dynamic_cast<GroupFramingTimerSetting*>(engine->getTimerSetting().get()), nullptr);
  PeopleFramingMode people(notifier, engine);
  people.checkAndSetSystemTimers();
  EXPECT_NE(dynamic_cast<PeopleFrameTimerSetting*>(engine->getTimerSetting().get()), nullptr);
  const auto kept = engine->getTimerSetting();
  engine->calls.clear();
  SpeakerFramingMode(notifier, engine).checkAndSetSystemTimers();
  MultiStreamTrackingMode(notifier, engine).checkAndSetSystemTimers();
  EXPECT_EQ(engine->getTimerSetting(), kept);
  EXPECT_EQ(engine->calls, "setting setting ") << "the same setting handed back";
}

}  // namespace
}  // namespace fyn::productionrules::testing
