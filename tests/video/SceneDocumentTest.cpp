#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "output/JsonLayoutBuilder.h"
#include "tools/video/compose/SceneDocument.h"

namespace fyn::productionrules::video::testing {
namespace {

std::string patched(const std::string& pointer, const nlohmann::json& value) {
  nlohmann::json document = nlohmann::json::parse(R"({"version":1,"streams":[{"streamid":0,"sceneNumber":7,
      "animation":"ease","duration":120,"timestamp":1700000000123,"destRef":{"height":720,"width":1280},
      "scene":[{"cameraid":3,"fynCamId":1,"srcRef":{"width":1920,"height":1080},
        "source":{"xoffset":10,"yoffset":20,"width":640,"height":360},
        "dest":{"xoffset":30,"yoffset":40,"width":320,"height":180},"frameindex":0}]}]})");
  if (!pointer.empty()) {
    document[nlohmann::json::json_pointer(pointer)] = value;
  }
  return document.dump();
}

TEST(SceneDocument, IsReadAsTheServiceWritesIt) {
  Layout layout;
  layout.streamId = 2;
  layout.animation = "dissolve";
  layout.duration = 90;
  layout.frames.resize(2);
  layout.frames[0].fynCamId = 0;
  layout.frames[0].source = {100, 50, 740, 410};
  layout.frames[0].dest = {0, 0, 640, 720};
  layout.frames[1].fynCamId = 1;
  layout.frames[1].srcRef = {1920, 1080};
  layout.frames[1].source = {0, 0, 1920, 1080};
  layout.frames[1].dest = {640, 0, 1280, 720};
  std::uint32_t sceneNumber = 41;
  for (const bool debug : {false, true}) {
    const std::vector<StreamScene> streams = parseSceneDocument(JsonLayoutBuilder().generateMultiStreamLayout(
        {layout, Layout()}, sceneNumber, FramingMode::MultiStream, debug));
    ASSERT_EQ(streams.size(), 2U);
    const StreamScene& stream = streams[0];
    EXPECT_EQ(stream.id, 2);
    EXPECT_EQ(stream.sceneNumber, 41);
    EXPECT_EQ(stream.animation, "dissolve");
    EXPECT_EQ(stream.durationMs, 90);
    EXPECT_GT(stream.timestampMs, 0);
    EXPECT_EQ(stream.reference, cv::Size(1280, 720));
    ASSERT_EQ(stream.tiles.size(), 2U) << debug;
    EXPECT_EQ(stream.tiles[0].camera, 0);
    EXPECT_EQ(stream.tiles[0].reference, cv::Size(1280, 720));
    EXPECT_EQ(stream.tiles[0].source, cv::Rect(100, 50, 640, 360));
    EXPECT_EQ(stream.tiles[0].dest, cv::Rect(0, 0, 640, 720));
    EXPECT_EQ(stream.tiles[1].camera, 1);
    EXPECT_EQ(stream.tiles[1].reference, cv::Size(1920, 1080));
    // A stream without a frame carries a blank entry.
    EXPECT_TRUE(streams[1].tiles.empty());
  }
}

TEST(SceneDocument, WhatIsNoneIsRefusedWithItsFault) {
  EXPECT_EQ(parseSceneDocument(patched("", nullptr)).size(), 1U);
  EXPECT_TRUE(parseSceneDocument(R"({"version":1,"streams":[]})").empty());
  struct Case {
    std::string text;
    const char* fault;
  };
  for (const Case& one :
       {Case{"", "parse error"}, Case{"{\"streams\":[", "parse error"}, Case{"[]", "cannot use at()"},
        Case{"{}", "'streams' not found"}, Case{R"({"streams":[{}]})", "'streamid' not found"},
        Case{patched("/streams/0/animation", 5), "must be string"},
        Case{patched("/streams/0/scene/0/source/width", "wide"), "must be number"},
        Case{patched("/streams/0/scene/0/dest/xoffset", 16777217), "\"xoffset\" is 16777217"},
        Case{patched("/streams/0/scene/0/source/height", -16777217), "\"height\" is -16777217"},
        Case{patched("/streams/0/scene/0", 5), "cannot use at()"}}) {
    try {
      parseSceneDocument(one.text);
      ADD_FAILURE() << "accepted: " << one.text;
    } catch (const SceneFault& fault) {
      EXPECT_NE(std::string(fault.what()).find(one.fault), std::string::npos) << fault.what();
    }
  }
}

}  // namespace
}  // namespace fyn::productionrules::video::testing
