#include <gtest/gtest.h>

#include "output/JsonLayoutBuilder.h"
#include "output/LayoutTimers.h"
#include "tests/testing/TestEnvironment.h"

namespace fyn::productionrules {
namespace {

constexpr std::uint32_t kNow = 1000000;  // what the test environment's clock reads

std::shared_ptr<Layout> layoutWithTimers() {
  auto layout = std::make_shared<Layout>();
  layout->layoutType = FramingType::GROUP;
  layout->streamId = 3;
  layout->isLogicalStream = false;
  layout->layoutTimer = getTimer(4000, kNow - 1500);
  Frame frame;
  frame.frameType = FramingType::LARGE_PROXIMITY;
  frame.headPosition = HeadPosition::GROUP_HEAD_LEFT;
  frame.headPositionTimer = getTimer(8000, kNow - 1);
  frame.feedPriorityTimer = getTimer(4000, kNow);
  layout->frames = {frame, Frame{}};
  layout->frames[1].frameIndex = 1;
  return layout;
}

std::string half(const char* key, int frameTimer) {
  return std::string("\"") + key +
         R"(":{"layouts":[{"isVirtualCamera":"true","layoutType":"GROUP","layoutTimer":2500,"frames":[)"
         R"({"frameindex":0,"stream":3,"frameType":"NONE","headPosition":"GROUP_HEAD_LEFT","frameTimer":)" +
         std::to_string(frameTimer) +
         R"(},{"frameindex":1,"stream":3,"frameType":"NONE","headPosition":"HEAD_ON_EDGE","frameTimer":0}]}]})";
}

TEST(DebugTimerDocument, ShowsWhatRemainsAndOnlyCurrentFramesHaveTimers) {
  const testing::TestEnvironment environment;
  const std::shared_ptr<Layout> layout = layoutWithTimers();
  EXPECT_EQ(JsonLayoutBuilder().generateDebugTimerInfo({nullptr, layout}, {layout, nullptr}),
            "{" + half("currentLayout", 7999) + "," + half("nextLayout", 0) + "}");
  EXPECT_EQ(JsonLayoutBuilder().generateDebugTimerInfo({}, {nullptr}),
            R"({"currentLayout":{"layouts":[]},"nextLayout":{"layouts":[]}})");
}

TEST(UpdateLayoutTimers, KnowsTheCurrentHalfByTheVeryKeyNotByItsText) {
  const std::string sameText = kCurrentLayoutKey;
  OrderedObject document(1);
  updateLayoutTimers({layoutWithTimers()}, document, kNow, sameText.c_str());
  EXPECT_EQ(document.take().text, "{" + half("currentLayout", 0) + "}");
}

}  // namespace
}  // namespace fyn::productionrules
