#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "model/Layout.h"
#include "tests/testing/CapturedLog.h"

namespace fyn::productionrules {
namespace {

using nlohmann::json;

json frameDocument() {
  return json::parse(R"({
      "frameindex": 2, "frameType": "PARTIAL_GROUP", "frameLayout": "kFrameLayoutHeadWide", "fynCamId": 1,
      "heads": [3, 3, 1], "source": {"xoffset": 10, "yoffset": 20, "width": 100, "height": 50},
      "dest": {"xoffset": 960, "yoffset": 540, "width": 960, "height": 540}, "srcRef": {"width": 1920, "height": 1080}})");
}

json layoutDocument() {
  return {{"streamid", 1},
          {"layoutType", "GROUP"},
          {"isVirtualCamera", "false"},
          {"frameNumber", 5000000000},
          {"animation", "cut"},
          {"duration", 90},
          {"facecount", 2},
          {"destRef", {{"width", 1920}, {"height", 1080}}},
          {"scene", json::array({frameDocument()})}};
}

TEST(LayoutDocument, IsReadIntoAllFieldsAndTheLog) {
  const testing::CapturedLog log;
  Layout layout;
  layout.frames.resize(1);
  layout.from_json(layoutDocument());
  EXPECT_EQ(layout.streamId, 1);
  EXPECT_EQ(layout.layoutType, FramingType::GROUP);
  EXPECT_TRUE(layout.isLogicalStream);
  EXPECT_EQ(layout.frameNumber, 5000000000);
  EXPECT_EQ(layout.animation, "cut");
  EXPECT_EQ(layout.duration, 90);
  EXPECT_EQ(layout.faceCount, 2);
  ASSERT_EQ(layout.frames.size(), 2U) << "frames are appended";
  const Frame& frame = layout.frames[1];
  EXPECT_EQ(frame.frameIndex, 2);
  EXPECT_EQ(frame.frameType, FramingType::PARTIAL_GROUP);
  EXPECT_EQ(frame.frameLayout, kFrameLayoutHeadWide);
  EXPECT_EQ(frame.fynCamId, 1U);
  EXPECT_EQ(frame.heads, (std::set<std::int64_t>{1, 3}));
  EXPECT_EQ(frame.fynHeads, frame.heads);
  EXPECT_EQ(frame.source, (Rect{10, 20, 110, 70}));
  EXPECT_EQ(frame.dest, (Rect{640, 360, 1280, 720}));
  EXPECT_EQ(frame.srcRef, (Dimension{1920, 1080}));
  EXPECT_EQ(log.lines(),
            std::vector<std::string>{
                "D|FramingUtil|from_json srcRef [1920 1080] dest [960 540] position 640 360 1280 720"});
}

TEST(LayoutDocument, OnlyTheTextFalseIsALogicalStream) {
  for (const auto& [text, isLogical] :
       {std::pair("false", true), std::pair("true", false), std::pair("False", false),
        std::pair("false ", false), std::pair("", false)}) {
    Layout layout;
    json document = layoutDocument();
    document["isVirtualCamera"] = text;
    layout.from_json(document);
    EXPECT_EQ(layout.isLogicalStream, isLogical) << text;
  }
}

// What is missing or of a wrong kind raises the library's error; what stood before it stays read.
TEST(LayoutDocument, FaultsRaiseTheLibrarysErrors) {
  struct Row {
    const char* patch;
    const char* error;
  };
  constexpr Row kRows[] = {
      {R"({"streamid":null})", "[json.exception.out_of_range.403] key 'streamid' not found"},
      {R"({"isVirtualCamera":false})", "[json.exception.type_error.302] type must be string, but is boolean"},
      {R"({"frameNumber":"7"})", "[json.exception.type_error.302] type must be number, but is string"},
      {R"({"frameNumber":true})", "[json.exception.type_error.302] type must be number, but is boolean"},
      {R"({"destRef":5})", "[json.exception.type_error.304] cannot use at() with number"},
      {R"({"destRef":{"height":null,"width":null}})",
       "[json.exception.out_of_range.403] key 'height' not found"},
      {R"({"scene":[{"frameindex":0}]})", "[json.exception.out_of_range.403] key 'fynCamId' not found"},
      {R"({"scene":[{"frameindex":0,"fynCamId":0,"heads":{"a":1}}]})",
       "[json.exception.type_error.302] type must be array, but is object"},
      {R"({"scene":[{"frameindex":0,"fynCamId":0,"heads":[true]}]})",
       "[json.exception.type_error.302] type must be number, but is boolean"},
      {R"({"scene":[7]})", "[json.exception.type_error.304] cannot use at() with number"},
  };
  for (const Row& row : kRows) {
    json document = layoutDocument();
    document.merge_patch(json::parse(row.patch));
    Layout layout;
    try {
      layout.from_json(document);
      ADD_FAILURE() << row.patch << " was read";
    } catch (const json::exception& fault) {
      EXPECT_STREQ(fault.what(), row.error) << row.patch;
    }
    EXPECT_TRUE(layout.frames.empty()) << "a half-read frame is not appended";
  }
}

TEST(LayoutDocument, OptionalPartsMayBeMissing) {
  Layout layout;
  json document = layoutDocument();
  document.erase("scene");
  layout.from_json(document);
  EXPECT_TRUE(layout.frames.empty());

  Frame frame;
  frame.frameType = FramingType::ROOM;
  frame.frameLayout = kFrameLayoutHeadSquare;
  frame.heads = {9};
  json part = frameDocument();
  part.erase("frameType");
  part.erase("frameLayout");
  frame.from_json(part, 1920, 1080);
  EXPECT_EQ(frame.frameType, FramingType::ROOM);
  EXPECT_EQ(frame.frameLayout, kFrameLayoutHeadSquare);
  EXPECT_EQ(frame.heads, (std::set<std::int64_t>{1, 3, 9}));
}

TEST(FrameDocument, DestinationsAreScaledWithoutTraps) {
  struct Row {
    const char* dest;
    int width;
    int height;
    Rect scaled;
  };
  constexpr Row kRows[] = {
      {R"({"xoffset":1,"yoffset":1,"width":1,"height":1})", 1280, 720, {1, 1, 2, 2}},
      {R"({"xoffset":1,"yoffset":-1,"width":1,"height":1})", 1920, 1080, {0, 0, 1, 0}},  // towards zero
      {R"({"xoffset":5,"yoffset":5,"width":5,"height":5})", 0, 720, {0, 5, 0, 10}},
      {R"({"xoffset":5,"yoffset":5,"width":5,"height":5})", 1280, 0, {5, 0, 10, 0}},
      {R"({"xoffset":2147483647,"yoffset":0,"width":1,"height":0})", 1, 1, {-1280, 0, 0, 0}},  // wraps
  };
  for (const Row& row : kRows) {
    json document = frameDocument();
    document["dest"] = json::parse(row.dest);
    document["source"]["xoffset"] = 2147483647;
    Frame frame;
    frame.from_json(document, row.width, row.height);
    EXPECT_EQ(frame.dest, row.scaled) << row.dest << " in " << row.width << " x " << row.height;
    EXPECT_EQ(frame.source.right, -2147483648 + 99);
  }
}

TEST(SetLayoutAnimation, IgnoresAnEmptyPointer) {
  setLayoutAnimation(nullptr, "cut", 1);
  const auto layout = std::make_shared<Layout>();
  setLayoutAnimation(layout, "ease", 120);
  EXPECT_EQ(layout->animation, "ease");
  EXPECT_EQ(layout->duration, 120);
}

}  // namespace
}  // namespace fyn::productionrules
