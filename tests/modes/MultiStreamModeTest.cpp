// The mode of several streams with its own engine: what it sends, in which order.
#include <gtest/gtest.h>

#include "config/PrConfig.h"
#include "model/FynCamerasConfig.h"
#include "modes/MultiStreamTrackingMode.h"
#include "platform/SystemEnvironment.h"
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
    PrConfig::set(config);
    FynCamerasConfig::getMutable().fynCamId = 0;
    processTimes().lastPeopleCountSend = 1000000;
    mode = std::make_unique<MultiStreamTrackingMode>(notifier, nullptr);
  }
  ~MultiStreamMode() override {
    PrConfig::set(PrConfig::DEFAULT);
    FynCamerasConfig::dispose();
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

TEST_F(MultiStreamMode, ListsStreamZeroFirst) {
  EXPECT_TRUE(mode->process(people({1, 2}).mlData()));
  EXPECT_EQ(textOf(mode->getFramingLayout()->getFinalLayoutPtrs()), "0 GROUP, 1 HEAD, 2 HEAD");
  EXPECT_EQ(textOf(mode->getFramingLayout()->getNextLayoutPtrs()), "-, -, -");
  EXPECT_EQ(sent(), "0 GROUP, 1 HEAD, 2 HEAD");
  for (const Layout& layout : notifier.lastLayouts) {
    EXPECT_EQ(layout.isLogicalStream, layout.streamId == 0);
  }
  // Person 2 leaves: streams 0 and 2 have a layout that waits, each by its own timer.
  EXPECT_FALSE(mode->process(people({1}).mlData()));
  EXPECT_EQ(textOf(mode->getFramingLayout()->getNextLayoutPtrs()), "0 HEAD, -, 2 ROOM");
  environment.time.advanceTo(environment.time.now() + 1001);
  EXPECT_FALSE(mode->process(people({1}).mlData()));
  EXPECT_EQ(textOf(notifier.lastFinals), "0 GROUP, 1 HEAD, 2 HEAD");
  EXPECT_EQ(textOf(notifier.lastNexts), "0 HEAD, -, 2 ROOM");
  EXPECT_EQ(mode->getFramingLayout()->getPeopleCount(), 1U);
}

TEST_F(MultiStreamMode, TakesNewWaitsWithTheNextRefresh) {
  mode->process(people({1, 2}).mlData());
  PrConfig config = PrConfig::get();
  config.timersPFLayoutChangeHead2Other = 5000;
  config.timersLayoutChangeGf2Other = 7000;
  PrConfig::set(config);
  environment.time.advanceTo(environment.time.now() + 2001);
  mode->process(people({1}).mlData());
  const auto next = mode->getFramingLayout()->getNextLayoutPtrs();
  ASSERT_EQ(textOf(next), "0 HEAD, -, 2 ROOM");
  EXPECT_EQ(next[0]->layoutTimer.duration, 7000U);
  EXPECT_EQ(next[2]->layoutTimer.duration, 5000U - 35 * 80) << "somebody has left";
}

TEST_F(MultiStreamMode, DumpsTheLatestFrameNumber) {
  mode->process(people({1, 2}).frameNumber(41).mlData());
  mode->process(people({1, 2}).frameNumber(42).mlData());
  EXPECT_NE(mode->getDebugDataInJson().find(R"("frameNumber":42)"), std::string::npos);
}

TEST_F(MultiStreamMode, TakesTheNumberOfStreamsWithTheNextResult) {
  mode->process(people({1, 2}).mlData());
  struct Row {
    unsigned streams;
    const char* sent;
  };
  const Row rows[] = {{1, "0 GROUP, 1 HEAD"},
                      {4, "0 GROUP, 1 HEAD, 2 HEAD, 3 ROOM, 4 ROOM"},
                      {0, "0 GROUP"},
                      {2, "0 GROUP, 1 HEAD, 2 HEAD"}};
  for (const Row& row : rows) {
    mode->setMaxStreams(row.streams);
    EXPECT_TRUE(mode->process(people({1, 2}).mlData())) << row.streams;
    EXPECT_EQ(sent(), row.sent);
  }
}

TEST_F(MultiStreamMode, GivesASecondaryLayoutToTheStreamItNames) {
  mode->process(people({1, 2}).mlData());
  const auto given = [](int stream) {
    auto layout = std::make_shared<Layout>();
    layout->layoutType = FramingType::PROXIMITY;
    layout->streamId = stream;
    return layout;
  };
  struct Row {
    int stream;
    const char* sent;
  };
  const Row rows[] = {{2, "0 GROUP, 1 HEAD, 2 PROXIMITY"},
                      {0, "0 PROXIMITY, 1 HEAD, 2 PROXIMITY"},
                      {9, "0 PROXIMITY, 1 HEAD, 2 PROXIMITY"}};
  for (const Row& row : rows) {
    const auto layout = given(row.stream);
    mode->setSecondaryLayout({layout});
    EXPECT_TRUE(mode->isLayoutPending());
    EXPECT_TRUE(mode->process(people({1, 2}).mlData())) << row.stream;
    EXPECT_EQ(sent(), row.sent);
    EXPECT_EQ(mode->getFramingLayout()->getFinalLayoutPtrs().at(row.stream == 2 ? 2 : 0), layout);
    EXPECT_FALSE(mode->isLayoutPending());
  }
  mode->setSecondaryLayout({nullptr});
  EXPECT_FALSE(mode->isLayoutPending());
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
