// The fast way of reading a vision result against the exact one, which defines what a text means.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "model/FastVisionReader.h"
#include "model/FynCamerasConfig.h"
#include "model/MLData.h"
#include "model/VisionResultReader.h"
#include "tests/testing/CapturedLog.h"
#include "tests/testing/EditedText.h"

namespace fyn::productionrules {
namespace {

using testing::CapturedLog;
using testing::editedText;

const std::string kUsual =
    R"({"timestamp":33,"frameNumber":7,"heads":[)"
    R"({"fynId":4,"associatedHeads":[{"id":11,"isSpeaker":true,"bbox":{"left":1,"top":2,"right":30,"bottom":44},)"
    R"("ssb":{"left":0,"top":0,"right":90,"bottom":100},"yaw":12.5,"pitch":-3,"qfactor":5,"score":0.97,"camId":2,)"
    R"("subsetSpeakers":[4,5],"proximityGroup":[11],"explicitGroup":[],"extendedGroup":[-7]},)"
    R"({"id":12,"camId":3,"qfactor":2,"yaw":-0.0},{"camId":9,"fynCamId":9,"qfactor":4},{"camId":3,"yaw":1}]},)"
    R"({"associatedHeads":[{"score":1,"later":{"a":[null,"\u00e4\n"]}}],"fynId":0}]})";

std::string numbers(const std::vector<std::int32_t>& ids) {
  std::string text;
  for (const std::int32_t id : ids) {
    text += std::to_string(id) + ' ';
  }
  return text;
}

// Every field, the cameras in the order of the map and of the feed priority.
std::string describe(const MLData& result) {
  std::ostringstream text;
  text << std::hexfloat << result.timestamp << ' ' << result.frameNumber;
  for (const auto& person : result.heads) {
    text << "\nperson " << person->id;
    for (const auto& [camId, head] : person->mCamIdAssocHeadMap) {
      text << "\n camera " << camId << ": " << head->id << ' ' << head->isSpeaker << ' '
           << RectToString(head->bbox) << ' ' << RectToString(head->ssb) << ' ' << head->imageQuality << ' '
           << head->yaw << ' ' << head->pitch << ' ' << head->qfactor << ' ' << head->score << ' '
           << head->camId << ' ' << head->fynCamId << " s " << numbers(head->subsetSpeakers) << "p "
           << numbers(head->proximityGroup) << "e " << numbers(head->explicitGroup) << "x "
           << numbers(head->extendedGroup);
    }
    for (const std::uint32_t camId : person->feedPriorityList) {
      text << "\n feed " << camId;
    }
  }
  return text.str();
}

// What `read` makes of the text, its fault, and its log.
template <typename Read>
std::string outcome(const std::string& text, Read read) {
  CapturedLog log;
  FynCamerasConfig::get();
  log.take();  // that it has been made
  std::string outcome;
  try {
    outcome = describe(*read(text));
  } catch (const nlohmann::json::exception& fault) {
    outcome = fault.what();
  }
  for (const std::string& line : log.lines()) {
    outcome += "\nlog " + line;
  }
  return outcome;
}

std::string readExactly(const std::string& text) {
  return outcome(text, [](const std::string& vision) {
    auto result = std::make_shared<MLData>();
    result->from_json(nlohmann::json::parse(vision));
    return result;
  });
}

TEST(VisionReaders, AUsualTextIsReadFast) {
  if (!FastVisionReader::isBuilt()) {
    GTEST_SKIP() << "built without the fast reader";
  }
  FastVisionReader reader;
  for (const std::string& text : {kUsual, std::string(R"({"heads":[]})")}) {
    const auto result = reader.read(text);
    ASSERT_NE(result, nullptr) << text;
    EXPECT_EQ(describe(*result), readExactly(text));
  }
}

// What the fast way is not sure of.
TEST(VisionReaders, AnUnusualTextIsNot) {
  const auto inHead = [](const std::string& members) {
    return R"({"heads":[{"fynId":1,"associatedHeads":[{)" + members + "}]}]}";
  };
  const std::vector<std::string> texts{
      "",
      "{}",
      "[]",
      "\xEF\xBB\xBF" + kUsual,
      kUsual + "x",
      kUsual + std::string(1, '\0'),
      R"({"heads":null})",
      R"({"heads":{}})",
      R"({"heads":[],"heads":[]})",
      R"({"timestamp":1.5,"heads":[]})",
      R"({"frameNumber":true,"heads":[]})",
      R"({"timestamp":9223372036854775808,"heads":[]})",
      R"({"heads":[{"fynId":1}]})",
      R"({"heads":[{"fynId":1,"associatedHeads":[]}]})",
      R"({"heads":[{"associatedHeads":[{}]}]})",
      R"({"heads":[{"fynId":-1,"associatedHeads":[{}]}]})",
      R"({"heads":[{"fynId":2147483648,"associatedHeads":[{}]}]})",
      R"({"heads":[7]})",
      R"({"heads":[],"later":")" + std::string(300000, 'x') + R"("})",
      inHead(R"("id":1,"id":1)"),
      inHead(R"("isSpeaker":1)"),
      inHead(R"("yaw":1e39)"),
      inHead(R"("yaw":null)"),
      inHead(R"("score":"1")"),
      inHead(R"("pitch":1.0)"),
      inHead(R"("camId":18446744073709551615)"),
      inHead(R"("proximityGroup":[1,true])"),
      inHead(R"("proximityGroup":{})"),
      inHead(R"("bbox":[1,2,3,4])"),
      inHead(R"("bbox":{"left":1,"top":2,"right":3})"),
      inHead("\"id\":1,\"later\":\"\xFF\""),
      inHead(R"("later":1e999)"),
      inHead(R"("later":)" + std::string(2000, '[') + std::string(2000, ']'))};
  FastVisionReader reader;
  for (const std::string& text : texts) {
    EXPECT_EQ(reader.read(text), nullptr) << text;
  }
}

TEST(VisionReaders, WhatIsReadFastIsWhatTheExactWayReads) {
  constexpr int kTexts = 20000;
  std::mt19937 random(7);  // the same texts each time
  FastVisionReader reader;
  int readFast = 0;
  for (int index = 0; index < kTexts; ++index) {
    const std::string text = editedText(kUsual, random);
    if (const auto result = reader.read(text)) {
      ++readFast;
      ASSERT_EQ(describe(*result), readExactly(text)) << text;
    }
  }
  if (FastVisionReader::isBuilt()) {
    EXPECT_GT(readFast, kTexts / 50);
  }
}

// The one function that the service calls: whichever way is taken, result, fault and log are the exact way's.
TEST(VisionReaders, TheServicesReaderTakesEitherWay) {
  VisionResultReader reader;
  for (const char* const text :
       {R"({"heads":[{"fynId":1,"associatedHeads":[{"camId":1.9}]},{"fynId":2},{"associatedHeads":[{}]}]})",
        R"({"heads":[{"fynId":1,"associatedHeads":[{"yaw":"left"}]}]})", R"({"heads")"}) {
    EXPECT_EQ(outcome(text, [&](const std::string& vision) { return reader.read(vision); }),
              readExactly(text));
  }
}

}  // namespace
}  // namespace fyn::productionrules
