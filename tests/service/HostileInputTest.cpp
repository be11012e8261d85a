// Input of a broken or hostile sender: the line that reports it, nothing changed, and the next good message
// works.
#include <gtest/gtest.h>

#include <functional>
#include <nlohmann/json.hpp>

#include "tests/service/RoomService.h"

namespace fyn::productionrules::testing {
namespace {

using nlohmann::json;

// Recursion of any kind ends with the stack at a tenth of the first depth already.
constexpr std::size_t kDeepest = 1000000;
constexpr std::size_t kDeep = 100000;

std::string nested(const std::string& open, const std::string& inner, const std::string& close,
                   std::size_t depth = kDeep) {
  std::string text;
  text.reserve(depth * (open.size() + close.size()) + inner.size());
  for (std::size_t i = 0; i < depth; ++i) {
    text += open;
  }
  text += inner;
  for (std::size_t i = 0; i < depth; ++i) {
    text += close;
  }
  return text;
}

bool endsWith(const std::string& text, const std::string& end) {
  return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

Scene twoPeople() {
  return scene().person(1).at(500, 300).person(2).at(700, 300);
}

/** The next good vision results are taken: somebody comes and goes again, and the count follows, later where
 * the mode doubts a newcomer and misses who has gone. */
void expectWorks(RoomService& room, const std::string& after) {
  constexpr std::uint64_t kNobodyIsMissedSoLong = 4000;
  const auto stay = [&room](const Scene& scene) {
    room.send(scene);
    room.environment.time.advanceTo(room.environment.time.now() + kNobodyIsMissedSoLong);
    room.send(scene);
  };
  stay(twoPeople());
  room.heard();
  stay(twoPeople().person(3).at(600, 300));
  stay(twoPeople());
  Lines counts;
  for (const std::string& message : room.heard()) {
    if (message.rfind("/PeopleCount", 0) == 0) {
      counts.push_back(message);
    }
  }
  counts.erase(std::unique(counts.begin(), counts.end()), counts.end());
  if (!counts.empty() && counts.front() == R"(/PeopleCount {"face_count":2,"smallestFaceHeight":120})") {
    counts.erase(counts.begin());
  }
  EXPECT_EQ(counts, (Lines{R"(/PeopleCount {"face_count":3,"smallestFaceHeight":120})",
                           R"(/PeopleCount {"face_count":2,"smallestFaceHeight":120})"}))
      << after.substr(0, 200);
  room.take();
}

class HostileInput : public ::testing::Test {
 protected:
  HostileInput() {
    room.start();
    room.send("/camera", R"({"fynCamId":0})");
    room.send(twoPeople());
    room.take();
  }

  void expectRefused(const std::string& topic, const std::string& text, bool reportsInput) {
    const std::string before = room.state();
    room.handle(topic, text);
    const Lines lines = room.take();
    ASSERT_FALSE(lines.empty()) << topic << " " << text.substr(0, 100);
    if (reportsInput) {
      EXPECT_EQ(lines.back().rfind("E|ProductionRulesIPCService|parsing error: [json.exception.", 0), 0U)
          << lines.back().substr(0, 200);
      EXPECT_TRUE(endsWith(lines.back(), ", input=" + text)) << text.substr(0, 100);
    } else {
      EXPECT_EQ(lines.back().rfind("E|BaseIPCService|process: topic: " + topic + ", exception: ", 0), 0U)
          << lines.back().substr(0, 200);
    }
    EXPECT_EQ(room.state(), before) << topic << " " << text.substr(0, 100);
  }

  RoomService room;
};

/** Texts that no handler can read, whatever it expects. */
std::vector<std::string> unreadable() {
  return {"",
          "{",
          "nul",
          "\"",
          "{\"heads\":[}",
          "[1,]",
          "// comment\n{}",
          "\xff\xfe",
          "{\"a\":\"\xc3\"}",
          "{} {}",
          "[1e999999]x",
          std::string(kDeepest, '['),
          nested("{\"a\":", "", ""),
          "{\"a\":\"" + std::string(3 << 20, 'x')};
}

TEST_F(HostileInput, UnreadableTexts) {
  for (const std::string& text : unreadable()) {
    expectRefused("/ICDOut", text, true);
    expectRefused("/PRBOutSecondary/0", text, true);
    for (const char* const topic :
         {"/camera", "/cameras", "/cameraParameters/head", "/FynCameraMoved/remote"}) {
      expectRefused(topic, text, false);
    }
    expectWorks(room, text);
  }
}

struct Nested {
  const char* topic;
  std::string before;
  std::string after;
};

TEST_F(HostileInput, DeeplyNestedValuesWhereverTheyStand) {
  const std::string person = R"({"heads":[{"fynId":1,"associatedHeads":)";
  const std::vector<Nested> places{{"/ICDOut", "", ""},
                                   {"/ICDOut", R"({"heads":[{"x":)", "}]}"},
                                   {"/ICDOut", R"({"heads":[)", "]}"},
                                   {"/ICDOut", person, "}]}"},
                                   {"/ICDOut", person + R"([{"id":)", "}]}]}"},
                                   {"/ICDOut", person + R"([{"proximityGroup":)", "}]}]}"},
                                   {"/ICDOut", person + R"([{"bbox":)", "}]}]}"},
                                   {"/PRBOutSecondary/0", R"({"streams":)", "}"},
                                   {"/PRBOutSecondary/0", R"({"streams":[)", "]}"},
                                   {"/camera", R"({"fynCamId":)", "}"},
                                   {"/cameras", "", ""},
                                   {"/cameras", R"([{"ids":{"uid":)", "}}]"},
                                   {"/cameraParameters/head", R"({"imageWidth":)", "}"},
                                   {"/FynCameraMoved/remote", R"({"fynCamId":)", "}"}};
  const std::string array = nested("[", "", "]");
  const std::string object = nested(R"({"a":)", "1", "}");
  for (const Nested& place : places) {
    for (const std::string& deep : {array, object}) {
      room.handle(place.topic, place.before + deep + place.after);
      room.take();
      room.send(twoPeople());
      expectWorks(room, place.topic + place.before);
    }
  }
  room.handle("/ICDOut", R"({"heads":[{"x":)" + nested("[", "", "]", kDeepest) + "}]}");
  EXPECT_EQ(room.take().front(),
            "E||from_json **Received INVALID HEAD Head list (nested more than 1000 deep)");
}

/** Numbers at and beyond the limits of every type, and what is no number. */
std::vector<json> extremes() {
  return {-2147483648LL,
          2147483647,
          4294967295LL,
          -9223372036854775807LL - 1,
          18446744073709551615ULL,
          1e300,
          -1e300,
          0.49,
          -0.0,
          true,
          nullptr,
          "x",
          json::array(),
          json::object()};
}

/** Calls `visit` with `document` once per number, boolean and extreme, that number replaced by the extreme.
 */
template <typename Visit>
void withEachExtreme(const json& document, const Visit& visit) {
  const json flat = document.flatten();
  for (const auto& [path, value] : flat.items()) {
    for (const json& extreme : extremes()) {
      json changed = document;
      changed[json::json_pointer(path)] = extreme;
      visit(changed.dump(), path);
    }
  }
}

TEST_F(HostileInput, ExtremeNumbersInEveryFieldOfAVisionResult) {
  json result = twoPeople().person(3).at(900, 300).speaking().json();
  json& head = result["heads"][2]["associatedHeads"][0];
  head["pitch"] = 3;
  head["score"] = 0.5;
  head["fynCamId"] = 0;
  head["proximityGroup"] = {1, 2};
  head["subsetSpeakers"] = {1};
  head["ssb"] = {{"left", 1}, {"top", 2}, {"right", 3}, {"bottom", 4}};
  for (const char* const mode : {"GroupFraming", "PeopleFraming", "SpeakerFraming", "MultiStream"}) {
    room.set("vendor.talkertracking.flag", std::to_string(static_cast<int>(stringToFramingMode(mode))));
    room.send("/ctl", "config-change");
    std::uint64_t now = room.environment.time.now();
    withEachExtreme(result, [&](const std::string& text, const std::string& path) {
      room.environment.time.advanceTo(now += 2500);
      room.send("/ICDOut", text);
      for (const std::string& line : room.take()) {
        ASSERT_EQ(line.find("E|BaseIPCService"), std::string::npos) << path << " " << line;
      }
    });
    room.send(twoPeople());
    expectWorks(room, mode);
  }
}

TEST_F(HostileInput, ExtremeNumbersInCameraDocuments) {
  const json identity{{"fynCamId", 0}, {"cameraType", 1}};
  const json parameters{{"imageWidth", 1280}, {"imageHeight", 720}, {"horizontalPeriod", 1}};
  const json list = json::array({{{"isAttached", true},
                                  {"ids", {{"fynCamId", 0}, {"componentId", 1}, {"uid", "u"}}},
                                  {"caps", {{"hasIcd", true}}}}});
  const auto visit = [this](const char* topic) {
    return [this, topic](const std::string& text, const std::string& path) {
      room.handle(topic, text);
      room.send(twoPeople().person(3).at(5, 5));
      for (const std::string& line : room.take()) {
        ASSERT_EQ(line.find("topic: /ICDOut"), std::string::npos) << path << " " << line;
      }
    };
  };
  withEachExtreme(identity, visit("/camera"));
  withEachExtreme(parameters, visit("/cameraParameters/head"));
  withEachExtreme(list, visit("/cameras"));
  room.handle("/camera", R"({"fynCamId":0})");
  room.handle("/cameras", "[]");
  room.send(twoPeople());
  expectWorks(room, "cameras");
}

TEST(HostileCameras, IdsWithoutEndAreNotKept) {
  constexpr int kMany = 2 * static_cast<int>(FynCamerasConfig::kMostCameras);
  const std::string full = "E|FynCamerasConfig|64 cameras are known, further ones are ignored";
  json list = json::array();
  for (int id = 0; id < kMany; ++id) {
    list.push_back({{"isAttached", true}, {"ids", {{"fynCamId", id}}}});
  }
  struct Case {
    const char* role;
    std::size_t known;
    std::function<void(RoomService& room, const std::string& id)> tell;
  };
  for (const Case& one :
       {Case{"0", 64,
             [](RoomService&room, const std::string&id) {
               room.send("/cameraParameters/head/" + id, R"({"imageWidth":1,"imageHeight":2})");
             }},
        Case{"0", 64,
             [](RoomService&room, const std::string&id) {
               room.send("/camera", R"({"fynCamId":)" + id + "}");
             }},
        Case{"2", 0,
             [](RoomService&room, const std::string&id) {
               room.send("/camera", R"({"fynCamId":)" + id + "}");
             }},
        Case{"1", 64,
             [&](RoomService&room, const std::string& /*id*/) { room.send("/cameras", list.dump()); }}}) {
    RoomService room;
    room.set("vendor.fynpilot.fynOperatingMode", one.role);
    room.start();
    for (int id = 0; id < kMany; ++id) {
      one.tell(room, std::to_string(id));
    }
    const Lines lines = room.take();
    EXPECT_EQ(std::count(lines.begin(), lines.end(), full), 1) << one.role;
    EXPECT_EQ(FynCamerasConfig::get().fynCamInfoMap.size(), one.known) << one.role;
    // The last camera that still had room, and the next.
    room.send("/PRBOutSecondary/63", "[");
    room.send("/PRBOutSecondary/64", "[");
    EXPECT_EQ(room.take().size(), one.known == 0 ? 1U : 0U) << one.role;
  }
}

TEST(HostileSecondary, ExtremeNumbersInEveryFieldOfALayout) {
  RoomService room;
  room.set("vendor.fynpilot.fynOperatingMode", "2");
  room.set("vendor.feature.pfReframeOnSecondaryEnabled", "1");
  room.start();
  room.send("/camera", R"({"fynCamId":0})");
  const json offset{{"xoffset", 10}, {"yoffset", 20}, {"width", 300}, {"height", 200}};
  for (const char* const type : {"GROUP", "HEAD", "PROXIMITY"}) {
    const json entry{{"fynCamId", 0},
                     {"srcRef", {{"width", 1280}, {"height", 720}}},
                     {"source", offset},
                     {"dest", offset},
                     {"frameindex", 0},
                     {"frameType", type},
                     {"frameLayout", "kFrameLayoutHeadSingle"},
                     {"heads", {1, 2}}};
    const json stream{{"streamid", 0},
                      {"layoutType", type},
                      {"isVirtualCamera", "false"},
                      {"frameNumber", 1},
                      {"animation", "cut"},
                      {"duration", 1},
                      {"facecount", 2},
                      {"destRef", {{"height", 720}, {"width", 1280}}},
                      {"scene", json::array({entry})}};
    std::uint64_t now = room.environment.time.now();
    withEachExtreme(json{{"streams", json::array({stream})}},
                    [&](const std::string& text, const std::string& path) {
                      room.environment.time.advanceTo(now += 2500);
                      room.send("/PRBOutSecondary/0", text);
                      room.send(twoPeople());
                      room.send(twoPeople());
                      for (const std::string& line : room.take()) {
                        ASSERT_EQ(line.find("E|BaseIPCService"), std::string::npos) << path << " " << line;
                      }
                    });
  }
  expectWorks(room, "layouts");
}

}  // namespace
}  // namespace fyn::productionrules::testing
