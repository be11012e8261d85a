#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "model/FynCamerasConfig.h"
#include "output/JsonLayoutBuilder.h"
#include "tests/testing/TestEnvironment.h"

namespace fyn::productionrules {
namespace {

using nlohmann::ordered_json;

constexpr int kOwnCamera = 0;
constexpr int kRoundCamera = 2;

Frame frameOf(std::uint32_t camId, std::int32_t index, FramingType type) {
  Frame frame;
  frame.frameIndex = index;
  frame.frameType = type;
  frame.frameLayout = kFrameLayoutHeadWide;
  frame.source = {10, 20, 650, 380};
  frame.dest = {640, 0, 1280, 720};
  frame.fynCamId = camId;
  frame.fynHeads = {7, 3};
  frame.heads = {1, 0};
  frame.detectionBoundary = {100, 110, 300, 260};
  return frame;
}

Layout layoutOf(std::vector<Frame> frames) {
  Layout layout;
  layout.layoutType = FramingType::PROXIMITY;
  layout.frames = std::move(frames);
  layout.animation = "dissolve";
  layout.duration = 90;
  layout.faceCount = 3;
  layout.streamId = 1;
  layout.frameNumber = 5000000000;
  layout.reframeFrameNumber = 4999999990;
  layout.activeSpeaker = 7;
  layout.nextLayoutType = FramingType::GROUP;
  return layout;
}

// Two cameras are known: the device's own, and a 360-degree one.
class SceneDocumentTest : public ::testing::Test {
 protected:
  SceneDocumentTest() {
    FynCamerasConfig& cameras = FynCamerasConfig::getMutable();
    cameras.fynCamId = kOwnCamera;
    cameras.fynCamInfoMap[kOwnCamera].ids.uid = "own";
    cameras.fynCamInfoMap[kRoundCamera].ids.lensModelDimension = {3192, 512};
  }

  testing::TestEnvironment environment;
  const JsonLayoutBuilder builder{};
  const std::uint32_t counter = 41;
};

// The expected text, readable: whitespace between the tokens does not count, the order of keys does.
std::string compact(const char* text) {
  return ordered_json::parse(text).dump();
}

TEST_F(SceneDocumentTest, ScenesOfADeviceOnItsOwn) {
  const std::vector<Layout> layouts{layoutOf({frameOf(kOwnCamera, 4, FramingType::LARGE_PROXIMITY)})};
  EXPECT_EQ(builder.generateMultiStreamLayout(layouts, counter, FramingMode::PeopleFraming, false),
            compact(R"({
    "version": 1,
    "streams": [{
      "streamid": 1, "isVirtualCamera": "false", "frameNumber": 5000000000, "sceneNumber": 41,
      "adjustmentFrame": 4999999990, "TrackingMode": "PeopleFraming", "layoutType": "PROXIMITY",
      "animation": "dissolve", "duration": 90, "timestamp": 1700000000000,
      "destRef": {"height": 720, "width": 1280}, "facecount": 3, "activespeaker": 7, "relativepos": 0,
      "scene": [{
        "cameraid": 0, "fynCamId": 0, "srcRef": {"width": 1280, "height": 720},
        "source": {"xoffset": 10, "yoffset": 20, "width": 640, "height": 360},
        "dest": {"xoffset": 640, "yoffset": 0, "width": 640, "height": 720},
        "frameindex": 4}]}]})"));
}

TEST_F(SceneDocumentTest, ScenesOfAPrimaryDevice) {
  const std::vector<Layout> layouts{layoutOf(
      {frameOf(kOwnCamera, 0, FramingType::HEAD), frameOf(kRoundCamera, 1, FramingType::LARGE_PROXIMITY)})};
  EXPECT_EQ(builder.generateMultiStreamLayoutPrimary(layouts, counter, FramingMode::GroupFraming, kOwnCamera,
                                                     false),
            compact(R"({
    "version": 1,
    "streams": [{
      "streamid": 1, "isVirtualCamera": "false", "frameNumber": 5000000000, "sceneNumber": 41,
      "adjustmentFrame": 4999999990, "TrackingMode": "GroupFraming", "uid": "own",
      "animation": "dissolve", "duration": 90, "timestamp": 1700000000000,
      "destRef": {"height": 720, "width": 1280}, "facecount": 3, "layoutType": "PROXIMITY",
      "activespeaker": 7, "relativepos": 0,
      "scene": [{
        "cameraid": 0, "fynCamId": 0, "srcRef": {"width": 1280, "height": 720},
        "source": {"xoffset": 10, "yoffset": 20, "width": 640, "height": 360},
        "dest": {"xoffset": 640, "yoffset": 0, "width": 640, "height": 720},
        "frameindex": 0, "frameType": "HEAD", "frameLayout": "kFrameLayoutHeadWide", "heads": [3, 7]
      }, {
        "cameraid": 2, "fynCamId": 2, "srcRef": {"width": 3192, "height": 512},
        "source": {"xoffset": 10, "yoffset": 20, "width": 640, "height": 360},
        "dest": {"xoffset": 640, "yoffset": 0, "width": 640, "height": 720},
        "frameindex": 1, "frameType": "LARGE_PROXIMITY", "frameLayout": "kFrameLayoutHeadWide",
        "heads": [3, 7]}]}]})"));
}

TEST_F(SceneDocumentTest, ASecondaryCameraGetsItsOwnFramesOnly) {
  const std::vector<Layout> layouts{
      layoutOf({frameOf(kOwnCamera, 0, FramingType::HEAD), frameOf(kRoundCamera, 1, FramingType::HEAD)}),
      layoutOf({frameOf(kOwnCamera, 0, FramingType::GROUP)})};
  // The debug flag adds nothing here: the other device would read a boundary as a frame.
  EXPECT_EQ(builder.generateSecondaryLayout(layouts, counter, kRoundCamera, "round", true), compact(R"({
    "version": 1,
    "streams": [{
      "streamid": 1, "isVirtualCamera": "false", "frameNumber": 5000000000, "sceneNumber": 41,
      "uid": "round", "layoutType": "PROXIMITY", "animation": "dissolve", "duration": 90,
      "timestamp": 1700000000000, "destRef": {"height": 720, "width": 1280}, "facecount": 3,
      "activespeaker": 7, "relativepos": 0,
      "scene": [{
        "cameraid": 2, "fynCamId": 2, "srcRef": {"width": 3192, "height": 512},
        "source": {"xoffset": 10, "yoffset": 20, "width": 640, "height": 360},
        "dest": {"xoffset": 640, "yoffset": 0, "width": 640, "height": 720},
        "frameindex": 1, "frameType": "HEAD", "frameLayout": "kFrameLayoutHeadWide", "heads": [3, 7]}],
      "nextLayout": "GROUP"
    }, {
      "streamid": 1, "isVirtualCamera": "false", "frameNumber": 5000000000, "sceneNumber": 41,
      "uid": "round", "layoutType": "PROXIMITY", "animation": "dissolve", "duration": 90,
      "timestamp": 1700000000000, "destRef": {"height": 720, "width": 1280}, "facecount": 3,
      "activespeaker": 7, "relativepos": 1,
      "scene": [{
        "cameraid": 2, "fynCamId": 2, "srcRef": {"width": 3192, "height": 512},
        "source": {"xoffset": 0, "yoffset": 0, "width": 0, "height": 0},
        "dest": {"xoffset": 0, "yoffset": 0, "width": 0, "height": 0},
        "frameindex": 0, "frameType": "NONE", "frameLayout": "kFrameLayoutNone", "heads": []}],
      "nextLayout": "GROUP"}]})"));
}

// The scene arrays alone, for what happens to single entries.
ordered_json sceneOf(const std::string& document, std::size_t stream = 0) {
  return ordered_json::parse(document)["streams"][stream]["scene"];
}

TEST_F(SceneDocumentTest, ADebugDocumentShowsTheBoundaryAfterEachFrame) {
  const std::vector<Layout> layouts{
      layoutOf({frameOf(kOwnCamera, 0, FramingType::HEAD), frameOf(kOwnCamera, 1, FramingType::HEAD)}),
      layoutOf({})};
  const std::string bounds = R"({"debugBounds":{"xoffset":100,"yoffset":110,"width":200,"height":150}})";
  for (const std::string& document :
       {builder.generateMultiStreamLayout(layouts, counter, FramingMode::GroupFraming, true),
        builder.generateMultiStreamLayoutPrimary(layouts, counter, FramingMode::GroupFraming, kOwnCamera,
                                                 true)}) {
    const ordered_json scene = sceneOf(document);
    ASSERT_EQ(scene.size(), 4U);
    EXPECT_EQ(scene[0]["frameindex"], 0);
    EXPECT_EQ(scene[1].dump(), bounds);
    EXPECT_EQ(scene[2]["frameindex"], 1);
    EXPECT_EQ(scene[3].dump(), bounds);
    EXPECT_EQ(sceneOf(document, 1).size(), 1U) << "nothing bounds a blank entry";
  }
  EXPECT_EQ(counter, 41U);
}

TEST_F(SceneDocumentTest, AStreamWithoutFramesCarriesABlankEntry) {
  const std::string blank = R"({"cameraid":2,"fynCamId":2,"srcRef":{"width":3192,"height":512},)"
                            R"("source":{"xoffset":0,"yoffset":0,"width":0,"height":0},)"
                            R"("dest":{"xoffset":0,"yoffset":0,"width":0,"height":0},"frameindex":0)";
  FynCamerasConfig::getMutable().fynCamId = kRoundCamera;
  const std::vector<Layout> layouts{layoutOf({})};
  EXPECT_EQ(sceneOf(builder.generateMultiStreamLayout(layouts, counter, FramingMode::Off, false)).dump(),
            "[" + blank + "}]");
  EXPECT_EQ(sceneOf(builder.generateMultiStreamLayoutPrimary(layouts, counter, FramingMode::Off, kRoundCamera,
                                                             false))
                .dump(),
            "[" + blank + R"(,"frameType":"NONE","frameLayout":"kFrameLayoutNone","heads":[]}])");
}

TEST_F(SceneDocumentTest, TheImageSizeIsTheFramesOwnOrTheCameras) {
  struct Row {
    std::uint32_t camId;
    Dimension srcRef;
    const char* written;
  };
  constexpr Row kRows[] = {
      {kRoundCamera, {}, R"({"width":3192,"height":512})"},
      {kRoundCamera, {1920, 1080}, R"({"width":1920,"height":1080})"},
      {kRoundCamera, {1920, 0}, R"({"width":1920,"height":0})"},
      {9, {}, R"({"width":1280,"height":720})"},  // not listed
      {0xFFFFFFFFU, {}, R"({"width":1280,"height":720})"},
  };
  for (const Row& row : kRows) {
    Frame frame = frameOf(row.camId, 0, FramingType::HEAD);
    frame.srcRef = row.srcRef;
    const ordered_json entry =
        sceneOf(builder.generateMultiStreamLayout({layoutOf({frame})}, counter, FramingMode::Off, false))[0];
    EXPECT_EQ(entry["srcRef"].dump(), row.written);
    EXPECT_EQ(entry["cameraid"], static_cast<std::int32_t>(row.camId)) << "no camera is -1";
    EXPECT_EQ(entry["fynCamId"], entry["cameraid"]);
  }
}

TEST_F(SceneDocumentTest, SmallDocuments) {
  for (const std::string& document :
       {builder.generateMultiStreamLayout({}, counter, FramingMode::GroupFraming, false),
        builder.generateMultiStreamLayoutPrimary({}, counter, FramingMode::GroupFraming, kOwnCamera, true),
        builder.generateSecondaryLayout({}, counter, kRoundCamera, "", false)}) {
    EXPECT_EQ(document, R"({"version":1,"streams":[]})");
  }
  EXPECT_EQ(builder.generatePeopleCountJson(0, 0), R"({"face_count":0,"smallestFaceHeight":0})");
  EXPECT_EQ(builder.generatePeopleCountJson(12, 4294967295U),
            R"({"face_count":12,"smallestFaceHeight":4294967295})");
}

TEST_F(SceneDocumentTest, ASingleScene) {
  FynCamerasConfig::getMutable().fynCamId = kRoundCamera;
  const std::vector<std::pair<Rect, Rect>> views{{{0, 0, 100, 50}, {0, 0, 640, 720}},
                                                 {{5, 5, 25, 15}, {640, 0, 1280, 720}}};
  EXPECT_EQ(builder.generateLayout(views, "cut", 12, 10), compact(R"({
    "frameNumber": 12, "adjustmentFrame": 10, "animation": "cut", "timestamp": 1700000000000,
    "scene": [{
      "cameraid": 2, "fynCamId": 2, "srcRef": {"width": 3192, "height": 512},
      "source": {"xoffset": 0, "yoffset": 0, "width": 100, "height": 50},
      "dest": {"xoffset": 0, "yoffset": 0, "width": 640, "height": 720}, "frameindex": 0
    }, {
      "cameraid": 2, "fynCamId": 2, "srcRef": {"width": 3192, "height": 512},
      "source": {"xoffset": 5, "yoffset": 5, "width": 20, "height": 10},
      "dest": {"xoffset": 640, "yoffset": 0, "width": 640, "height": 720}, "frameindex": 1}]})"));
  EXPECT_EQ(sceneOf(R"({"streams":[)" + builder.generateLayout({}, "cut", 0, 0) + "]}").dump(), "[]");
}

TEST_F(SceneDocumentTest, TextsThatAreNoUtf8StopNothing) {
  FynCamerasConfig::getMutable().fynCamInfoMap[kOwnCamera].ids.uid = "a\xFFz";
  Layout layout = layoutOf({});
  layout.animation = "\xC3";
  const std::string primary =
      builder.generateMultiStreamLayoutPrimary({layout}, counter, FramingMode::Off, kOwnCamera, false);
  EXPECT_NE(primary.find("\"uid\":\"a\xEF\xBF\xBDz\""), std::string::npos) << primary;
  EXPECT_TRUE(ordered_json::accept(primary));
  EXPECT_TRUE(ordered_json::accept(builder.generateSecondaryLayout({layout}, counter, 2, "\xE2\x82", false)));
  EXPECT_TRUE(ordered_json::accept(builder.generateLayout({}, "\x80", 0, 0)));
}

TEST_F(SceneDocumentTest, SidesThatLeave32BitsWrap) {
  Frame frame = frameOf(kOwnCamera, 0, FramingType::HEAD);
  frame.source = {-2147483647 - 1, 0, 2147483647, 0};
  const ordered_json entry =
      sceneOf(builder.generateMultiStreamLayout({layoutOf({frame})}, counter, FramingMode::Off, false))[0];
  EXPECT_EQ(entry["source"]["width"], -1);
}

}  // namespace
}  // namespace fyn::productionrules
