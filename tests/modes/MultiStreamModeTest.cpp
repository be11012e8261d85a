// The mode of several streams with its own engine: what it sends, in which order.
#include <gtest/gtest.h>

#include "config/PrConfig.h"
#include "model/FynCamerasConfig.h"
#include "modes/MultiStreamTrackingMode.h"
#include "tests/modes/FakeEngine.h"
#include "tests/testing/SceneBuilder.h"
#include "tests/testing/TestEnvironment.h"

namespace fyn::productionrules::testing {
namespace {

Scene people(std::initializer_list<int> ids) {
  Scene room = scene();
  for (const int id : ids) {
    room.person(id).at(200 + 300 * (id - 1), 300);
  }
  return room;
}

/** "0 GROUP, 1 HEAD", "-" for a stream without a layout. */
std::string textOf(const std::vector<std::shared_ptr<Layout>>& layouts) {
  std::string text;
  for (const std::shared_ptr<Layout>& layout : layouts) {
    text += text.empty() ? "" : ", ";
    text +=
        layout == nullptr ? "-" : std::to_string(layout->streamId) + " " + layoutToString(layout->layoutType);
  }
  return text;
}

class MultiStreamMode : public ::testing::Test {
 protected:
  MultiStreamMode() {
    PrConfig config;
    config.fynDebugEnabled = true;
    config.maxStreams = 2;
    config.presenceEnabled = false;
    PrConfig::set(config);
    FynCamerasConfig::getMutable().fynCamId = 0;
    ServiceState::current().times.lastPeopleCountSend = 1000000;
    mode = std::make_unique<MultiStreamTrackingMode>(notifier, nullptr);
  }

  /** Sends and tells what was sent. */
  std::string sent() {
    mode->sendLayout(false);
    std::vector<std::shared_ptr<Layout>> layouts;
    for (const Layout& layout : notifier.lastLayouts) {
      layouts.push_back(std::make_shared<Layout>(layout));
    }
    return textOf(layouts);
  }

  TestEnvironment environment;
  FakeNotifier notifier;
  std::unique_ptr<MultiStreamTrackingMode> mode;
};

TEST_F(MultiStreamMode, TakesNewWaitsWithTheNextRefresh) {
  mode->process(people({1, 2}).mlData());
  PrConfig config = PrConfig::get();
  config.timersPFLayoutChangeHead2Other = 5000;
  config.timersLayoutChangeGf2Other = 7000;
  PrConfig::set(config);
  environment.time.advanceTo(environment.time.now() + 2001);
  mode->process(people({1}).mlData());
  const auto next = mode->getFramingLayout()->getNextLayoutPtrs();
  ASSERT_EQ(textOf(next), "0 HEAD, -, 2 GROUP");
  EXPECT_EQ(next[0]->layoutTimer.duration, 7000U);
  EXPECT_EQ(next[2]->layoutTimer.duration, 5000U - 35 * 80) << "somebody has left";
}

TEST_F(MultiStreamMode, ResetsAndCutsEveryStream) {
  mode->process(people({1, 2}).mlData());
  for (const auto& layout : mode->getFramingLayout()->getFinalLayoutPtrs()) {
    setLayoutAnimation(layout, "dissolve", 90);
  }
  mode->setLayoutAnimationToCut();
  for (const auto& layout : mode->getFramingLayout()->getFinalLayoutPtrs()) {
    EXPECT_EQ(layout->animation, "cut");
    EXPECT_EQ(layout->duration, 0);
  }
  mode->resetLayouts();
  EXPECT_EQ(textOf(mode->getFramingLayout()->getFinalLayoutPtrs()), "-, -, -");
  EXPECT_EQ(sent(), "") << "no layout, no stream";
  EXPECT_EQ(mode->getDebugDataInJson(), "{}");
}

}  // namespace
}  // namespace fyn::productionrules::testing
