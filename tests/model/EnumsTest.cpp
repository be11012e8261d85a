#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "model/Enums.h"

namespace fyn::productionrules {
namespace {

TEST(FramingModes, TextsAndBack) {
  constexpr const char* kTexts[] = {"Off",           "GroupFraming", "SpeakerFraming", "PresenterTracking",
                                    "PeopleFraming", "MultiStream"};
  for (int value = 0; value < 6; ++value) {
    EXPECT_EQ(framingModeToString(static_cast<FramingMode>(value)), kTexts[value]);
    EXPECT_EQ(stringToFramingMode(kTexts[value]), static_cast<FramingMode>(value));
  }
  for (const int value : {6, -1, 2147483647}) {
    EXPECT_EQ(framingModeToString(static_cast<FramingMode>(value)), "Off") << value;
  }
  for (const char* text : {"", "groupframing", "GroupFraming ", "GroupFramin", "4"}) {
    EXPECT_EQ(stringToFramingMode(text), FramingMode::Off) << text;
  }
}

// The odd ones of each enumeration, its ends, and values outside.
TEST(EnumTexts, OfValuesInsideAndOutside) {
  EXPECT_EQ(layoutToString(FramingType::HEAD), "HEAD");
  EXPECT_EQ(layoutToString(FramingType::LARGE_PROXIMITY), "NONE");
  EXPECT_STREQ(framingTypeName(FramingType::LARGE_PROXIMITY), "LARGE_PROXIMITY");
  EXPECT_EQ(layoutToString(FramingType::ROOM), "ROOM");
  EXPECT_EQ(layoutToString(static_cast<FramingType>(8)), "NONE");
  EXPECT_EQ(layoutToString(static_cast<FramingType>(-1)), "NONE");
  EXPECT_EQ(frameLayoutToString(kFrameLayoutHeadSingle), "HeadSingle");
  EXPECT_EQ(frameLayoutToString(kFrameLayoutProximityColumnHalf), "ProximityColumnHal");
  EXPECT_STREQ(frameLayoutName(kFrameLayoutProximityColumnHalf), "kFrameLayoutProximityColumnHalf");
  EXPECT_EQ(frameLayoutToString(kFrameLayoutNone), "None");
  EXPECT_EQ(headPositionInString(HeadPosition::HEAD_ON_EDGE), "HEAD_ON_EDGE");
  EXPECT_EQ(headPositionInString(HeadPosition::CENTER), "CENTER");
  EXPECT_EQ(headPositionInString(static_cast<HeadPosition>(9)), "INVALID");
  EXPECT_EQ(headPositionInString(static_cast<HeadPosition>(-1)), "INVALID");
  EXPECT_EQ(getGazeString(PoseGaze::right), "right");
  EXPECT_EQ(getGazeString(static_cast<PoseGaze>(4)), "");
}

TEST(EnumsInDocuments, EveryNameIsReadBackAndAnythingElseIsTheFirst) {
  for (int value = 0; value < 8; ++value) {
    const auto type = static_cast<FramingType>(value);
    EXPECT_EQ(nlohmann::json(framingTypeName(type)).get<FramingType>(), type);
  }
  for (int value = 0; value < 10; ++value) {
    const auto layout = static_cast<FrameLayout>(value);
    EXPECT_EQ(nlohmann::json(frameLayoutName(layout)).get<FrameLayout>(), layout);
  }
  for (const char* text : {"3", "null", "\"GROUPS\"", "\"group\"", "\"\"", "[\"GROUP\"]", "true"}) {
    FramingType type = FramingType::ROOM;
    FrameLayout layout = kFrameLayoutNone;
    from_json(nlohmann::json::parse(text), type);
    from_json(nlohmann::json::parse(text), layout);
    EXPECT_EQ(type, FramingType::HEAD) << text;
    EXPECT_EQ(layout, kFrameLayoutHeadSingle) << text;
  }
}

}  // namespace
}  // namespace fyn::productionrules
