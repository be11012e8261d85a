#include <gtest/gtest.h>

#include <limits>
#include <nlohmann/json.hpp>

#include "model/FynCamerasConfig.h"
#include "model/Head.h"

namespace fyn::productionrules {
namespace {

Head headOf(const char* document) {
  Head head;
  head.from_json(nlohmann::json::parse(document));
  return head;
}

TEST(HeadDocument, EveryKeyIsOptional) {
  const Head head = headOf("{}");
  EXPECT_EQ(head.id, -1);
  EXPECT_EQ(head.yaw, 10.0F);
  EXPECT_EQ(head.pitch, 45);
  EXPECT_EQ(head.qfactor, 1U);
  EXPECT_EQ(head.camId, -1);
  EXPECT_EQ(head.fynCamId, -1);
  EXPECT_EQ(headOf("5").id, -1) << "what is no object has no keys";
}

TEST(HeadDocument, AllKeys) {
  const Head head = headOf(R"({"id":5000000000,"yaw":-3.5,"pitch":7,"score":0.25,"isSpeaker":true,
      "subsetSpeakers":[1],"proximityGroup":[2,3],"explicitGroup":[4],"extendedGroup":[5],
      "ssb":{"left":1,"top":2,"right":3,"bottom":4},"bbox":{"left":5,"top":6,"right":7,"bottom":8},"camId":9,"qfactor":4})");
  EXPECT_EQ(head.id, 5000000000);
  EXPECT_EQ(head.yaw, -3.5F);
  EXPECT_EQ(head.score, 0.25);
  EXPECT_EQ(head.subsetSpeakers, std::vector<std::int32_t>{1});
  EXPECT_EQ(head.explicitGroup, std::vector<std::int32_t>{4});
  EXPECT_EQ(head.extendedGroup, std::vector<std::int32_t>{5});
  EXPECT_EQ(head.imageQuality, 1.0F) << "not computed while reading";
  EXPECT_EQ(head.qfactor, 4U);
  EXPECT_EQ(
      head.str(),
      R"({"camId":9,"fynCamId":-1,"isSpeaker":true,"proximityGroup":[2,3],"ssb":[1,2,3,4],"headBox":[5,6,7,8]})");
}

TEST(HeadDocument, TheRankIsReadOnlyWithoutTheSystemsCameraNumber) {
  EXPECT_EQ(headOf(R"({"qfactor":4,"fynCamId":2})").qfactor, 1U);
  EXPECT_EQ(headOf(R"({"qfactor":4,"camId":2})").qfactor, 4U);
}

TEST(HeadDocument, WrongKindsRaiseTheLibrarysErrors) {
  struct Row {
    const char* document;
    const char* error;
  };
  constexpr Row kRows[] = {
      {R"({"id":true})", "[json.exception.type_error.302] type must be number, but is boolean"},
      {R"({"score":true})", "[json.exception.type_error.302] type must be number, but is boolean"},
      {R"({"yaw":"1"})", "[json.exception.type_error.302] type must be number, but is string"},
      {R"({"isSpeaker":1})", "[json.exception.type_error.302] type must be boolean, but is number"},
      {R"({"proximityGroup":3})", "[json.exception.type_error.302] type must be array, but is number"},
      {R"({"proximityGroup":{"a":3}})", "[json.exception.type_error.302] type must be array, but is object"},
      {R"({"bbox":{"left":1,"top":2}})", "[json.exception.out_of_range.403] key 'right' not found"},
      {R"({"ssb":[]})", "[json.exception.type_error.304] cannot use at() with array"},
      {R"({"qfactor":null})", "[json.exception.type_error.302] type must be number, but is null"},
      // Keys are read in a fixed order, so the first fault is named.
      {R"({"camId":"x","id":"x","bbox":1})",
       "[json.exception.type_error.302] type must be number, but is string"},
  };
  for (const Row& row : kRows) {
    try {
      headOf(row.document);
      ADD_FAILURE() << row.document << " was read";
    } catch (const nlohmann::json::exception& fault) {
      EXPECT_STREQ(fault.what(), row.error) << row.document;
    }
  }
  EXPECT_EQ(headOf(R"({"yaw":true,"pitch":false,"camId":true})").yaw, 1.0F) << "32-bit fields take booleans";
}

TEST(Heads, EqualByIdSpeakingAndBox) {
  const Head head = headOf(R"({"id":1})");
  EXPECT_TRUE(
      head.equals(headOf(R"({"id":1,"yaw":9,"camId":3,"ssb":{"left":1,"top":0,"right":0,"bottom":0}})")));
  EXPECT_FALSE(head.equals(headOf(R"({"id":2})")));
  EXPECT_FALSE(head.equals(headOf(R"({"id":1,"isSpeaker":true})")));
  EXPECT_FALSE(head.equals(headOf(R"({"id":1,"bbox":{"left":0,"top":0,"right":0,"bottom":1}})")));
}

TEST(Heads, RankFromYawAndQuality) {
  const float notANumber = std::numeric_limits<float>::quiet_NaN();
  struct Row {
    float yaw;
    float quality;
    std::uint32_t rank;
  };
  const Row rows[] = {
      {40, 3.9F, 5},    {40, 4, 2},    {40, 5, 2},   {40, 6.5F, 2},      {40, 6.6F, 1},
      {49.9F, 3.9F, 5}, {50, 3.9F, 6}, {50, 7, 3},   {100, 6.5F, 4},     {100.5F, 7, 7},
      {120, 3.9F, 9},   {120, 4, 8},   {-180, 7, 1}, {notANumber, 5, 0}, {40, notANumber, 1},
  };
  for (const Row& row : rows) {
    Head head;
    head.yaw = row.yaw;
    head.imageQuality = row.quality;
    head.calculateQfactor();
    EXPECT_EQ(head.qfactor, row.rank) << row.yaw << ", " << row.quality;
  }
}

TEST(Heads, QualityIsTheHeightInPerCentOfTheImage) {
  FynCamerasConfig::getMutable().fynCamInfoMap[5].ids.lensModelDimension = {3192, 512};
  struct Row {
    int camera;
    int height;
    float quality;
  };
  for (const Row& row : {Row{5, 128, 25.0F}, Row{0, 72, 10.0F}, Row{-1, -72, -10.0F},
                         Row{9, 10, std::numeric_limits<float>::infinity()}}) {
    Head head;
    head.fynCamId = row.camera;
    head.bbox = {0, 100, 0, 100 + row.height};
    head.calculatImageQuality();
    EXPECT_FLOAT_EQ(head.imageQuality, row.quality) << row.camera;
  }
}

}  // namespace
}  // namespace fyn::productionrules
