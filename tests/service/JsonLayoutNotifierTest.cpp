// What the notifier hands to which callback.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "config/PrConfig.h"
#include "model/FynCamerasConfig.h"
#include "service/JsonLayoutNotifier.h"
#include "tests/testing/TestEnvironment.h"

namespace fyn::productionrules::testing {
namespace {

using Lines = std::vector<std::string>;

class Notifier : public ::testing::Test {
 protected:
  Notifier() {
    FynCamerasConfig& cameras = FynCamerasConfig::getMutable();
    cameras.fynCamId = 0;
    for (const int id : {2, 0, 1}) {
      cameras.fynCamInfoMap[id].ids.uid = "uid" + std::to_string(id);
    }
    environment.log.take();
  }

  void role(FynOperatingMode mode) {
    PrConfig config;
    config.fynOperatingMode = mode;
    PrConfig::set(config);
  }

  void takeScenes() {
    notifier.setJsonCallback([this](const std::string& text, bool debug) {
      const auto stream = nlohmann::json::parse(text)["streams"][0];
      calls.push_back("scene " + stream["sceneNumber"].dump() +
                      (stream.contains("uid") ? " " + stream["uid"].dump() : "") + (debug ? " debug" : ""));
    });
  }
  void takeSecondaries() {
    notifier.setJsonSecondaryCallback([this](const std::string& text, int camId) {
      const auto stream = nlohmann::json::parse(text)["streams"][0];
      calls.push_back("camera " + std::to_string(camId) + " " + stream["sceneNumber"].dump() + " " +
                      stream["uid"].dump());
    });
  }

  TestEnvironment environment{3};
  /** As a host may build on it. */
  struct HostNotifier : JsonLayoutNotifier {};

  HostNotifier notifier;
  Lines calls;
};

constexpr const char* kNoSecondary =
    "E|JsonLayoutNotifier|sendLayouts: mJsonSecondaryCallbackFunP is nullptr";
constexpr const char* kNoScene = "E|JsonLayoutNotifier|sendLayouts: mJsonCallbackFunP is nullptr";

TEST_F(Notifier, MissingCallbacks) {
  struct Case {
    bool scene, secondary;
    FynOperatingMode role;
    Lines calls, log;
  };
  const Lines secondaries{"camera 1 0 \"uid1\"", "camera 2 0 \"uid2\""};
  const std::vector<Case> cases{
      {false, false, FynOperatingMode::Standalone, {}, {kNoScene}},
      {false, false, FynOperatingMode::Primary, {}, {kNoScene, kNoSecondary}},
      {false, true, FynOperatingMode::Standalone, secondaries, {kNoScene}},
      {true, false, FynOperatingMode::Standalone, {"scene 1"}, {}},
      {true, false, FynOperatingMode::Primary, {"scene 1 \"uid0\""}, {kNoSecondary}}};
  for (const Case& one : cases) {
    notifier = HostNotifier();
    calls.clear();
    role(one.role);
    if (one.scene) {
      takeScenes();
    }
    if (one.secondary) {
      takeSecondaries();
    }
    notifier.sendLayouts({Layout()}, FramingMode::GroupFraming, false);
    EXPECT_EQ(calls, one.calls);
    EXPECT_EQ(environment.log.take(), one.log);
  }
  // One layout without a callback is not even an error, and other documents are silently not built.
  notifier = HostNotifier();
  notifier.sendLayout(Layout(), FramingMode::GroupFraming, false);
  notifier.sendDebugTimerInfo({}, {});
  notifier.sendPeopleCount(1, 2);
  EXPECT_EQ(environment.log.take(), Lines{});
}

}  // namespace
}  // namespace fyn::productionrules::testing
