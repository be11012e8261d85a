// The lines that are read without taking their payload apart, against the way that reads every line.
#include <gtest/gtest.h>

#include <random>

#include "model/FastVisionReader.h"
#include "tests/testing/EditedText.h"
#include "tools/recording/EventParser.h"
#include "tools/recording/MessageLine.h"

namespace fyn::productionrules::testing {
namespace {

const std::string kUsual =
    R"({"t":33,"topic":"/ICDOut","payload":{"timestamp":1700000000033,"heads":[{"fynId":-4,"later":[true,false,null],)"
    R"("associatedHeads":[{"yaw":-12.5,"score":0.97,"far":1e-07,"camId":18446744073709551615,"name":"ä"}]}]}})";

const std::string kTruth =
    R"({"t":33,"truth":[{"id":1,"fynCamId":0,"bbox":{"left":-5,"top":2147483647,"right":7,"bottom":8},"speaks":true},)"
    R"({"id":1,"fynCamId":2,"bbox":{"left":1,"top":2,"right":3,"bottom":4},"speaks":false}]})";

std::string textOf(const RecordingEvent& event) {
  if (const auto* const truth = std::get_if<Truth>(&event.what)) {
    std::string text = std::to_string(event.t) + " truth";
    for (const TrueHead& head : truth->heads) {
      for (const std::int32_t value : {head.id, head.fynCamId, head.bbox.left, head.bbox.top, head.bbox.right,
                                       head.bbox.bottom, static_cast<std::int32_t>(head.speaks)}) {
        text.append(" ").append(std::to_string(value));
      }
    }
    return text;
  }
  const auto* const message = std::get_if<BusMessage>(&event.what);
  return message != nullptr ? std::to_string(event.t) + ' ' + message->topic + ' ' + message->payload
                            : std::string("no message");
}

std::string readAnyLine(const std::string& line) {
  RecordingEvent event;
  return parseRecordingLine(line, event).value_or(textOf(event));
}

TEST(MessageLine, OnlyUsualOnesAreReadFast) {
  if (!FastVisionReader::isBuilt()) {
    GTEST_SKIP() << "built without the fast reader";
  }
  const std::vector<std::pair<const char*, bool>> cases{
      {R"({"t":0,"topic":"/a","payload":[]})", true},
      {R"({"t":31536000000,"topic":"/a","payload":{"a":{},"a":[0.1,1e+20,-0.0]}})", true},
      {R"({"t":31536000001,"topic":"/a","payload":[]})", false},
      {R"({"t":-1,"topic":"/a","payload":[]})", false},
      {R"({"t":0.0,"topic":"/a","payload":[]})", false},
      {R"({"t":0,"topic":"a","payload":[]})", false},
      {R"({"t":0,"topic":"/a","payload":"[]"})", false},
      {R"({"t":0,"topic":"/a","payload":[],"property":{}})", false},
      {R"({"t":0,"topic":"/a","payload":[]} )", false},
      {R"({"t":0,"topic":"/a","payload":[] })", false},
      {R"({"t":0,"topic":"/a","payload":["\n"]})", false},
      {R"({"t":0,"topic":"/a","payload":[-0]})", false},
      {R"({"t":0,"topic":"/a","payload":[1e2]})", false},
      {R"({"t":0,"topic":"/a","payload":[1.50]})", false},
      {R"({"t":0,"topic":"/a","payload":[18446744073709551616]})", false},
      {R"({"t":0,"topic":"/a","payload":[}})", false},
      {kTruth.c_str(), true},
      {R"({"t":0,"truth":[]})", true},
      {R"({"t":0,"truth":{}})", false},
      {R"({"t":0,"truth":[7]})", false},
      {R"({"t":0,"truth":[],"topic":"/a"})", false},
  };
  MessageLine reader;
  for (const auto& [line, isTaken] : cases) {
    RecordingEvent event;
    EXPECT_EQ(reader.read(line, event), isTaken) << line;
  }
}

TEST(MessageLine, WhatItReadsIsWhatEveryLineMeans) {
  constexpr int kLines = 20000;
  std::mt19937 random(7);  // the same lines each time
  MessageLine reader;
  int taken = 0;
  for (int index = 0; index < kLines; ++index) {
    const std::string line = editedText(index % 2 == 0 ? kUsual : kTruth, random);
    RecordingEvent event;
    if (reader.read(line, event)) {
      ++taken;
      ASSERT_EQ(textOf(event), readAnyLine(line)) << line;
    }
  }
  if (FastVisionReader::isBuilt()) {
    EXPECT_GT(taken, kLines / 50);
  }
}

}  // namespace
}  // namespace fyn::productionrules::testing
