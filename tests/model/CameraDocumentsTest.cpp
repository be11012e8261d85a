#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "model/FynCamerasConfig.h"
#include "tests/testing/TestEnvironment.h"

namespace fyn::productionrules {
namespace {

class CamerasTest : public ::testing::Test {
 protected:
  static FynCamerasConfig& update(const char* document) {
    FynCameras cameras;
    cameras.from_json(nlohmann::json::parse(document));
    FynCamerasConfig::getMutable().update(cameras);
    return FynCamerasConfig::getMutable();
  }

  testing::TestEnvironment environment;
};

using Lines = std::vector<std::string>;

TEST_F(CamerasTest, TheInstanceIsMadeOnceAndSaysSo) {
  EXPECT_EQ(FynCamerasConfig::get().fynCamId, -1);
  EXPECT_EQ(FynCamerasConfig::get().forCamId, -1);
  EXPECT_FALSE(FynCamerasConfig::get().getCameraType());
  EXPECT_EQ(environment.log.take(), Lines{"W|FynCamerasConfig|FynCamerasConfig::ctor()"});
}

TEST_F(CamerasTest, OnlyAttachedCamerasAreKeptAndTheFirstOfAnId) {
  const FynCamerasConfig& config = update(R"([
      {"isAttached":true,"ids":{"fynCamId":1,"uid":"first"}},
      {"isAttached":true,"ids":{"fynCamId":1,"uid":"second"}},
      {"isAttached":false,"ids":{"fynCamId":2}},
      {"ids":{"fynCamId":3}}])");
  ASSERT_EQ(config.fynCamInfoMap.size(), 1U);
  EXPECT_EQ(config.fynCamInfoMap.at(1).ids.uid, "first");
  EXPECT_TRUE(update("[]").fynCamInfoMap.empty()) << "a list replaces the former one";
}

TEST_F(CamerasTest, AListIsIteratedAsTheLibraryDoes) {
  EXPECT_EQ(update(R"({"b":{"isAttached":true,"ids":{"fynCamId":5}}})").fynCamInfoMap.count(5), 1U);
  EXPECT_TRUE(update("null").fynCamInfoMap.empty());
  EXPECT_EQ(update(R"([{"isAttached":true,"ids":{"fynCamId":true}}])").fynCamInfoMap.count(1), 1U);
  for (const char* document :
       {R"([{"isAttached":1}])", R"([{"ids":{"uid":1}}])", R"([{"ids":{"fynCamId":"1"}}])"}) {
    EXPECT_THROW(update(document), nlohmann::json::type_error) << document;
  }
}

TEST_F(CamerasTest, ImageSizesComeFromTheLensModel) {
  struct Row {
    const char* model;
    Dimension size;
    bool isRound;
  };
  constexpr Row kRows[] = {
      {"Quil Lumen K5", {1280, 720}, false},
      {"Quil Lumen R6", {3192, 512}, true},
      {"quil lumen r6", {1280, 720}, false},
      {"Quil Lumen R6 ", {1280, 720}, true},
      {"", {1280, 720}, false},
  };
  for (const Row& row : kRows) {
    const FynCamerasConfig& config = update(
        (std::string(R"([{"isAttached":true,"ids":{"fynCamId":4,"cameraLensModel":")") + row.model + "\"}}]")
            .c_str());
    EXPECT_EQ(config.getCameraLensModelDimension(4), row.size) << row.model;
    EXPECT_EQ(getCameraLensModelDimension(4), row.size) << row.model;
    EXPECT_EQ(config.isSecondary360Camera(), row.isRound) << row.model;
  }
  EXPECT_FALSE(update("[]").isSecondary360Camera());
}

TEST_F(CamerasTest, TheTwoQueriesDifferForCamerasThatAreNotListed) {
  const FynCamerasConfig& config = update("[]");
  struct Row {
    int camId;
    Dimension member;
  };
  for (const Row& row : {Row{0, {1280, 720}}, Row{-1, {1280, 720}}, Row{1, {0, 0}}, Row{-2, {0, 0}}}) {
    EXPECT_EQ(config.getCameraLensModelDimension(row.camId), row.member) << row.camId;
    EXPECT_EQ(getCameraLensModelDimension(row.camId), (Dimension{1280, 720})) << row.camId;
  }
  environment.log.take();
  FynCamerasConfig::getMutable().setCameraLensModelDimension(-1, {1, 2});
  EXPECT_EQ(environment.log.take(),
            Lines{"I|FynCamerasConfig|setCamerLensModelDimension camId: -1, dimensions: {1, 2}"});
  EXPECT_EQ(config.getCameraLensModelDimension(-1), (Dimension{1, 2}));
  EXPECT_EQ(getCameraLensModelDimension(-1), (Dimension{1280, 720})) << "no camera is none of the list";
  EXPECT_FALSE(config.fynCamInfoMap.at(-1).isAttached);
}

TEST_F(CamerasTest, TextForLogs) {
  const FynCamerasConfig& config = update(R"([
      {"isAttached":true,"ids":{"fynCamId":2,"moduleId":"m","uid":"u","componentId":7,"cameraLensModel":"R6"},
       "caps":{"hasIcd":true}},
      {"isAttached":true}])");
  EXPECT_EQ(
      config.str(),
      R"({"fynCamId":-1,"forCamId":-1,"fynCamInfoMap":{)"
      R"("0":{"isAttached":true,"ids":{"fynCamId":0,"moduleId":"","uid":"","componentId":0,"lensModel":"",)"
      R"("lensModelDimension":[1280, 720]},"caps":{"hasIcd":false,"hasProductionRules":false}},)"
      R"("2":{"isAttached":true,"ids":{"fynCamId":2,"moduleId":"m","uid":"u","componentId":7,)"
      R"("lensModel":"R6","lensModelDimension":[1280, 720]},"caps":{"hasIcd":true,)"
      R"("hasProductionRules":false}}}})");
}

}  // namespace
}  // namespace fyn::productionrules
