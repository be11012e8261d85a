// The engine's state as text for the debug dump, byte for byte.
#include <gtest/gtest.h>

#include "layouts/speaker/SpeakerFramingLayout.h"
#include "layouts/streams/MultiStreamFramingLayout.h"
#include "tests/layouts/OpenEngine.h"

namespace fyn::productionrules::testing {
namespace {

class BaseDebugText : public ::testing::Test {
 protected:
  BaseDebugText() {
    frame = frameOf(FramingType::GROUP, {-5, 6, 700, 800});
    frame.dest = {1, 2, 3, 4};
    engine.mState.mCurLayout = layoutOf(FramingType::GROUP, {frame});
    engine.setCurrentTimerTickFun([] { return 5000U; });
  }

  static constexpr const char* kFrame =
      R"({"left":-5, "top":6, "right":700, "bottom":800, "frameType":"GROUP", "headPosition":"CENTER", )"
      R"("positionLeft":1, "positionTop":2, "positionRight":3, "positionBottom":4})";

  EngineEnvironment env;
  OpenEngine<BaseLayout> engine;
  Frame frame;
};

TEST_F(BaseDebugText, NothingButTheLayout) {
  EXPECT_EQ(engine.getDebugDataInJson(),
            std::string(R"({"layout": {, "curLayout":"GROUP", "frames": [)") + kFrame +
                R"(]}"heads": [],"frameNumber":-1,"streamID":"0", "isLogicalStream":"1"})");
  engine.mState.mCurLayout = nullptr;
  engine.mState.mNextLayout = layoutOf(FramingType::HEAD);
  EXPECT_EQ(engine.getDebugDataInJson(), "{}");
}

TEST_F(BaseDebugText, WaitingLayout) {
  engine.mState.mCurLayout = layoutOf(FramingType::ROOM);
  engine.mState.mNextLayout = layoutOf(FramingType::HEAD);
  const std::string end = R"(, "frames": []})";
  EXPECT_EQ(engine.getLayoutDataInJson(), R"("layout": {, "curLayout":"ROOM", "nextLayout":"HEAD")" + end);
  engine.mState.mNextLayout->layoutTimer = getTimer(1500, 4000);
  EXPECT_EQ(
      engine.getLayoutDataInJson(),
      R"("layout": {, "curLayout":"ROOM", "nextLayout":"HEAD", "waitMs":1000, "LayoutTimeRemainingToSwitch":500)" +
          end);
  engine.mState.mNextLayout->layoutTimer = {999, 4000, true};
  EXPECT_EQ(
      engine.getLayoutDataInJson(),
      R"("layout": {, "curLayout":"ROOM", "nextLayout":"HEAD", "waitMs":1000, "LayoutTimeRemainingToSwitch":4294967295)" +
          end)
      << "overdue and latched: the remainder wraps";
}

TEST_F(BaseDebugText, FramesPersonsAndStream) {
  Frame waiting = frame;
  waiting.frameType = FramingType::PROXIMITY;
  waiting.headPosition = HeadPosition::GROUP_MOVE_CLOSE;
  waiting.headPositionTimer = getTimer(30, 4990);
  engine.mState.mCurLayout = layoutOf(FramingType::GROUP, {frame, waiting});
  engine.mState.mCurLayout->streamId = -3;
  engine.mState.mCurLayout->isLogicalStream = false;
  const auto result =
      scene().frameNumber(1234567890123).person(9).at(100, 200).speaking().ssb({1, 2, 3, 4}).mlData();
  engine.updatePeopleMap(result);
  engine.verifyIfLayoutChangeNeeded(result);
  engine.mState.mNextLayout = nullptr;
  EXPECT_EQ(
      engine.getDebugDataInJson(),
      std::string(R"({"layout": {, "curLayout":"GROUP", "frames": [)") + kFrame +
          R"(,{"left":-5, "top":6, "right":700, "bottom":800, "frameType":"PROXIMITY", "headPosition":"GROUP_MOVE_CLOSE", )"
          R"("positionLeft":1, "positionTop":2, "positionRight":3, "positionBottom":4, "waitMs":10, )"
          R"("FrameTimeRemainingToSwitch":20}]}"heads": [)"
          R"({"camId":0,"fynCamId":-1,"isSpeaker":true,"proximityGroup":[],"ssb":[1,2,3,4],"headBox":[50,140,150,260]})"
          R"(],"frameNumber":1234567890123,"streamID":"-3", "isLogicalStream":"0"})");
}

TEST_F(BaseDebugText, PersonsAreSeparatedByCommaAndBlank) {
  engine.updatePeopleMap(scene().person(1).at(1, 1).person(2).at(2, 2).mlData());
  const std::string text = engine.getDebugDataInJson();
  EXPECT_NE(text.find("]}, {\"camId\":"), std::string::npos) << text;
}

template <typename Engine>
std::string dumpAfter(const std::vector<Scene>& results) {
  OpenEngine<Engine> engine;
  engine.mState.mCurLayout = layoutOf(FramingType::GROUP);
  for (const Scene& result : results) {
    engine.updatePeopleMap(result.mlData());
  }
  return engine.getDebugDataInJson();
}

TEST_F(BaseDebugText, TheOrderOfPersonsDoesNotDependOnWhoWasThereBefore) {
  Scene crowd;
  for (int id = 1; id <= 40; ++id) {
    crowd.person(id).at(20 * id, 300);
  }
  const Scene few = scene().person(17).at(340, 300).person(3).at(60, 300).person(30).at(600, 300);
  EXPECT_EQ(dumpAfter<BaseLayout>({crowd, few}), dumpAfter<BaseLayout>({few}));
  EXPECT_EQ(dumpAfter<SpeakerFramingLayout>({crowd, few}), dumpAfter<SpeakerFramingLayout>({few}));
  EXPECT_EQ(dumpAfter<MultiStreamFramingLayout>({crowd, few}), dumpAfter<MultiStreamFramingLayout>({few}));
}

}  // namespace
}  // namespace fyn::productionrules::testing
