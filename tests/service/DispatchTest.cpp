// Which message does what.
#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>
#include <string>

#include "service/FynFileWriter.h"
#include "service/TopicText.h"
#include "tests/service/RoomService.h"

namespace fyn::productionrules::testing {
namespace {

constexpr const char* kTag = "ProductionRulesIPCService|";

std::string info(const std::string& text) {
  return std::string("I|") + kTag + text;
}
std::string unknown(const std::string& topic) {
  return std::string("E|") + kTag + "ProductionRuleIPCService::process unknown topic: " + topic;
}
std::string thrown(const std::string& topic, const std::string& what) {
  return "E|BaseIPCService|process: topic: " + topic + ", exception: " + what;
}
/** What the standard library at hand says of a text that is no number: its wording differs from one to the
 * next. */
std::string noNumber() {
  try {
    return std::to_string(std::stoi("two"));
  } catch (const std::invalid_argument& error) {
    return error.what();
  }
}

struct Row {
  const char* topic;
  const char* text;
  Lines log;
};

TEST(Dispatch, LogOfEveryRow) {
  RoomService room;
  room.start();
  room.handle("/camera", R"({"fynCamId":2})");
  room.take();
  const auto parameters = [](const std::string& topic, const std::string& text) {
    return info("handleCameraParametersMsg: CAMERA_PARAMS: " + topic + " " + text);
  };
  const std::string size = R"({"imageWidth":1920,"imageHeight":1080})";
  const std::vector<Row> rows{
      {"/cameraParameters", "{", {parameters("/cameraParameters", "{")}},
      {"/cameraParameters/", "{", {parameters("/cameraParameters/", "{")}},
      {"/cameraParameters/tail/2", "{", {parameters("/cameraParameters/tail/2", "{")}},
      {"/cameraParametersX", "{", {unknown("/cameraParametersX")}},
      {"/cameraParameters/head/2",
       size.c_str(),
       {parameters("/cameraParameters/head/2", size),
        "I|FynCamerasConfig|setCamerLensModelDimension camId: 2, dimensions: {1920, 1080}"}},
      {"/cameraParameters/head/two",
       size.c_str(),
       {parameters("/cameraParameters/head/two", size), thrown("/cameraParameters/head/two", noNumber())}},
      {"/cameraParameters/head/",
       size.c_str(),
       {parameters("/cameraParameters/head/", size), thrown("/cameraParameters/head/", noNumber())}},
      {"/cameraParameters/head",
       "{}",
       {parameters("/cameraParameters/head", "{}"),
        thrown("/cameraParameters/head", "[json.exception.out_of_range.403] key 'imageWidth' not found")}},
      {"/ctl", "reset-layouts", {}},
      {"/ctl", "dump-debug", {}},
      {"/ctl", "Reset-Layouts", {unknown("/ctl")}},
      {"/ctl", "", {unknown("/ctl")}},
      {"/ctl/recordStart", "any", {}},
      {"/ctl/recordStop", "", {}},
      {"/ctl/recordStop/", "", {unknown("/ctl/recordStop/")}},
      {"/ctl/tracking-mode", "GroupFraming", {info("process: TRACKING_MODE_CTL_MSG: GroupFraming")}},
      {"/ctl/tracking-mode",
       "PresenterTracking",
       {info("process: TRACKING_MODE_CTL_MSG: PresenterTracking"),
        info("updateTrackingMode  updating to newMode: GroupFraming -> PresenterTracking")}},
      {"/ctl/tracking-mode",
       "groupframing",
       {info("process: TRACKING_MODE_CTL_MSG: groupframing"),
        info("updateTrackingMode  updating to newMode: PresenterTracking -> Off")}},
      {"/PRBOutSecondary/2", "{}", {}},
      {"/PRBOutSecondary/3", "{}", {unknown("/PRBOutSecondary/3")}},
      {"/PRBOutSecondary", "{}", {unknown("/PRBOutSecondary")}},
      {"/camera",
       "7",
       {info("process: CAMERA: 7"), std::string("E|") + kTag + "process fynCamId not found in message: 7"}},
      {"/debug/log/fyncamid", "", {info("process topic: /debug/log/fyncamid fynCamId: 2")}},
      {"/debug/log", "", {unknown("/debug/log")}},
      {"/FynCameraMoved/remote", R"({"fynCamId":2})", {}},
      {"/FynCameraMoved/remote",
       R"({"fynCamId":3})",
       {info("handleRemoteFynCameraMovedMsg: Remote camera moved, changing layout timer to 0")}},
      {"/FynCameraMoved/remote",
       "{}",
       {thrown("/FynCameraMoved/remote",
               "[json.exception.type_error.302] type must be number, but is null")}},
      {"/FynCameraMoved", R"({"fynCamId":3})", {unknown("/FynCameraMoved")}},
      {"/icdout", "{}", {unknown("/icdout")}},
      {"", "", {unknown("")}}};
  for (const Row& row : rows) {
    room.handle(row.topic, row.text);
    EXPECT_EQ(room.take(), row.log) << row.topic << " " << row.text;
  }
}

TEST(Dispatch, CameraIdentityOfEachRole) {
  struct Case {
    const char* role;
    const char* line;
    int forCamId;
    bool known;
  };
  for (const Case& one :
       {Case{"0", "process: camId: 5 Setting FynCamerasConfig fynCamId: 5 forCamId: 5", 5, true},
        Case{"1", "process: camId: 5 Setting FynCamerasConfig fynCamId: 5 forCamId: -1", -1, false},
        Case{"2", "process: camId: 5 Setting FynCamerasConfig fynCamId: 5 forCamId: -1", -1, false}}) {
    RoomService room;
    room.set("vendor.fynpilot.fynOperatingMode", one.role);
    room.start();
    if (one.known) {
      // The device's word about itself replaces that of the list.
      room.send("/cameras", R"([{"isAttached":true,"ids":{"fynCamId":5,"uid":"listed","componentId":7}}])");
    }
    room.send("/camera", R"({"fynCamId":5,"cameraType":5})");
    EXPECT_EQ(room.take().back(), info(one.line));
    const FynCamerasConfig& cameras = FynCamerasConfig::get();
    EXPECT_EQ(cameras.forCamId, one.forCamId);
    ASSERT_EQ(cameras.fynCamInfoMap.count(5) == 1, one.known);
    EXPECT_EQ(cameras.getCameraType(), 5);
    if (one.known) {
      EXPECT_EQ(
          cameras.fynCamInfoMap.at(5).str(),
          R"({"isAttached":true,"ids":{"fynCamId":5,"moduleId":"","uid":"","componentId":0,"lensModel":"",)"
          R"("lensModelDimension":[)" +
              kDefaultImageSize.str() + R"(]},"caps":{"hasIcd":true,"hasProductionRules":true}})");
    }
    // Only a secondary listens to what a primary sends to its camera; without an id that is camera 0.
    room.send("/camera", "{}");
    room.take();
    room.send("/PRBOutSecondary/5", "[");
    room.send("/PRBOutSecondary/0", "[");
    const bool isSecondary = *one.role == '2';
    const Lines lines = room.take();
    ASSERT_EQ(lines.size(), isSecondary ? 2U : 0U);
    if (isSecondary) {
      EXPECT_EQ(
          lines[0].rfind(std::string("E|") + kTag + "parsing error: [json.exception.parse_error.101]", 0),
          0U);
      EXPECT_EQ(lines[0].substr(lines[0].size() - 9), ", input=[");
      EXPECT_EQ(lines[1], unknown("/PRBOutSecondary/0"));
    }
  }
}

TEST(Dispatch, PanoramaWidthReplacesTheImageWidth) {
  struct Case {
    const char* topic;
    const char* text;
    int camId;
    Dimension size;
  };
  RoomService room;
  room.start();
  room.send("/camera", R"({"fynCamId":1})");
  for (const Case& one :
       {Case{"/cameraParameters/head",
             R"({"imageWidth":1920,"imageHeight":1080,"horizontalPeriod":0})",
             1,
             {1920, 1080}},
        Case{"/cameraParameters/head",
             R"({"imageWidth":1920,"imageHeight":1080,"horizontalPeriod":2200})",
             1,
             {2200, 1080}},
        Case{"/cameraParameters/head/4/6", R"({"imageWidth":5.9,"imageHeight":true})", 6, {5, 1}},
        Case{"/cameraParameters/head/ 7x",
             R"({"imageWidth":1e300,"imageHeight":-1})",
             7,
             {-2147483648, -1}}}) {
    room.send(one.topic, one.text);
    EXPECT_EQ(FynCamerasConfig::get().getCameraLensModelDimension(one.camId), one.size) << one.text;
  }
}

TEST(Dispatch, ResetConcernsTheActiveModeOnly) {
  RoomService room;
  room.start();
  room.send(scene().person(1).at(640, 300));
  BaseTrackingMode& group = room.service->trackingMode();
  room.send("/ctl/tracking-mode", "MultiStream");
  room.send("/ctl", "reset-layouts");
  EXPECT_NE(group.getFramingLayout()->getLayoutPtr(), nullptr);
  room.send("/ctl/tracking-mode", "GroupFraming");
  EXPECT_EQ(group.getFramingLayout()->getLayoutPtr(), nullptr) << "a mode that becomes active begins afresh";
}

TEST(Dispatch, PeriodicDebugSends) {
  struct Case {
    const char* title;
    const char* timer;
    bool recording;
    bool debugging;
    std::vector<int> seconds;  // of the results that send
  };
  for (const Case& one :
       {Case{"nobody watches", "2", false, false, {}}, Case{"recording", "2", true, false, {1, 3, 5}},
        Case{"debugging", "3", false, true, {1, 4}},
        Case{"every result", "0", true, true, {1, 2, 3, 4, 5}}}) {
    RoomService room;
    room.set("vendor.fyndebug.timer", one.timer);
    room.set("vendor.fyndebug.enabled", one.debugging ? "1" : "0");
    room.start();
    if (one.recording) {
      room.send("/ctl/recordStart", "");
    }
    room.send(scene());
    room.heard();
    std::vector<int> sent;
    for (int second = 1; second <= 5; ++second) {
      room.environment.time.advanceTo(static_cast<std::uint64_t>(second) * 1000);
      room.send(scene());
      for (const std::string& topic : room.heardTopics()) {
        EXPECT_NE(topic, "/PRBOut");
        if (topic == "/PRBOutDebug") {
          sent.push_back(second);
        }
      }
    }
    EXPECT_EQ(sent, one.seconds) << one.title;
    room.send("/ctl/recordStop", "");
    room.environment.time.advanceTo(60000);
    room.send(scene());
    const Lines topics = room.heardTopics();
    EXPECT_EQ(std::count(topics.begin(), topics.end(), "/PRBOutDebug"), one.debugging ? 1 : 0) << one.title;
  }
}

TEST(Dispatch, DumpWriter) {
  struct Case {
    const char* enabledAtStart;
    bool opens;
    int logged;
  };
  for (const Case& one : {Case{"1", true, 1}, Case{"0", true, 0}, Case{"1", false, 1}}) {
    RoomService room;
    room.configure(std::string("persist.feature.fynpilot.dumpdebug=") + one.enabledAtStart + "\n");
    room.dumpOpens = one.opens;
    room.start();
    ::testing::internal::CaptureStderr();
    room.send(scene());
    const std::string complaint = ::testing::internal::GetCapturedStderr();
    room.send("/ctl", "dump-debug");
    room.send("/ctl", "dump-debug");
    const std::string text = room.dump.str();
    if (one.logged == 0) {
      EXPECT_EQ(room.dumpPath, "");
      EXPECT_EQ(text, "");
      continue;
    }
    EXPECT_EQ(room.dumpPath, "/data/local/cvml-app-test/PRB_Layouts_1700000000000.txt");
    EXPECT_EQ(complaint, one.opens ? "" : "Error writing to closed file '" + room.dumpPath + "'.\n");
    EXPECT_EQ(text, one.opens ? room.service->trackingMode().getDebugDataInJson() + "\n" : "");
    EXPECT_EQ(room.heardTopics(), (Lines{"/PeopleCount", "/PRBOutDebug"})) << "debug documents only";
  }
}

TEST(Dispatch, ADumpThatEndsIsReportedOnce) {
  struct Disk : std::streambuf {
    explicit Disk(std::size_t size) : room(size) {}
    std::streamsize xsputn(const char* /*text*/, std::streamsize length) override {
      const auto taken = std::min(room, static_cast<std::size_t>(length));
      room -= taken;
      return static_cast<std::streamsize>(taken);
    }
    int_type overflow(int_type letter) override { return room == 0 ? traits_type::eof() : (--room, letter); }
    std::size_t room;
  };
  struct Case {
    std::size_t size;
    std::size_t line;
    std::size_t left;
    const char* reason;
  };
  constexpr std::size_t kMost = FynFileWriter::kMostBytes;
  for (const Case& one :
       {Case{20'000, 4'999, 0, "."},
        Case{kMost + 7, kMost / 4 - 1, 7, ": it has reached 256 MB, the rest is left out."},
        Case{kMost, kMost / 4, kMost / 4 - 3, ": it has reached 256 MB, the rest is left out."}}) {
    const TestEnvironment environment;
    Disk disk(one.size);
    FynFileWriter writer("PRB_Layouts",
                         [&](const std::string& /*path*/) { return std::make_unique<std::ostream>(&disk); });
    ::testing::internal::CaptureStderr();
    const std::string line(one.line, 'x');
    for (int count = 0; count < 6; ++count) {
      writer.write(line);
    }
    EXPECT_EQ(::testing::internal::GetCapturedStderr(),
              std::string("Error writing to file '/data/local/cvml-app-test/PRB_Layouts_1700000000000.txt'") +
                  one.reason + "\n");
    EXPECT_EQ(disk.room, one.left);
  }
}

TEST(Dispatch, SubTopics) {
  const std::vector<std::pair<const char*, Lines>> rows{{"/cameraParameters/head/3", {"head", "3"}},
                                                        {"/a", {}},
                                                        {"/a/b/", {"b", ""}},
                                                        {"", {}},
                                                        {"/", {}},
                                                        {"//", {""}},
                                                        {"a//b", {"", "b"}}};
  for (const auto& [topic, parts] : rows) {
    EXPECT_EQ(getSubTopics(topic), parts) << topic;
  }
  EXPECT_EQ(appendRemoteToTopic("/FynCameraMoved"), "/FynCameraMoved/remote");
}

}  // namespace
}  // namespace fyn::productionrules::testing
