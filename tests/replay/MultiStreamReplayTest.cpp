// Multi-stream framing through the whole service: the streams of every scene document that goes out.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <sstream>

#include "tests/testing/SceneBuilder.h"
#include "tools/replay/RecordingRun.h"

namespace fyn::productionrules::testing {
namespace {

/** Writes down each scene document as "1000 | 0 GROUP true | 1 HEAD false": time, then per stream its id,
 * type and "isVirtualCamera". */
class StreamLines final : public ReplayObserver {
 public:
  void onPublish(const std::string& topic, const std::string& payload) override {
    if (topic == "/TimerDebug") {
      timerStreams.push_back(streamsOf(nlohmann::json::parse(payload).at("currentLayout").at("layouts")));
    }
    if (topic != "/PRBOut") {
      return;
    }
    std::string line = std::to_string(replay->now());
    const nlohmann::json document = nlohmann::json::parse(payload);
    for (const nlohmann::json& stream : document.at("streams")) {
      line += " | " + std::to_string(stream.at("streamid").get<int>()) + " " +
              stream.at("layoutType").get<std::string>() +
              (stream.at("isVirtualCamera") == "true" ? " virtual" : "");
      EXPECT_EQ(stream.at("TrackingMode"), "MultiStream");
    }
    lines.push_back(line);
  }

  Replay* replay = nullptr;
  std::vector<std::string> lines;
  std::vector<std::string> timerStreams;

 private:
  static std::string streamsOf(const nlohmann::json& layouts) {
    std::string text;
    for (const nlohmann::json& layout : layouts) {
      for (const nlohmann::json& frame : layout.at("frames")) {
        text += std::to_string(frame.at("stream").get<int>()) + " ";
      }
    }
    return text;
  }
};

/** A recording that is written line by line. */
class Script {
 public:
  Script& property(const char* key, const char* value) { return line({{"property", {{key, value}}}}); }
  Script& control(const char* text) { return line({{"topic", "/ctl"}, {"payload", text}}); }
  /** The scene ten times a second, for so long. */
  Script& watch(const Scene& scene, int ms) {
    for (const int end = mTime + ms; mTime < end; mTime += 100) {
      line({{"topic", "/ICDOut"}, {"payload", scene.json()}});
    }
    return *this;
  }
  std::string text() const { return mText; }

 private:
  Script& line(nlohmann::json event) {
    event["t"] = mTime;
    mText += event.dump() + "\n";
    return *this;
  }

  int mTime = 0;
  std::string mText;
};

StreamLines play(const Script& script) {
  StreamLines lines;
  std::istringstream input(script.text());
  RecordingReader reader(input, "script");
  std::ostringstream printed;
  ReplayOptions options;
  options.standardOutput = &printed;
  options.properties = {{"vendor.talkertracking.flag", "5"}, {"vendor.fyndebug.enabled", "1"}};
  Replay replay(options, lines);
  lines.replay = &replay;
  runRecording(reader, replay);
  return lines;
}

Scene three() {
  return scene().person(1).at(200, 300).person(2).at(700, 300).person(3).at(1100, 300);
}

TEST(MultiStreamReplay, ThePropertyChangesTheNumberOfStreamsAtAReload) {
  const char* const key = "vendor.fynpilot.maxStreams";
  const StreamLines seen = play(Script()
                                    .watch(three(), 1000)
                                    .property(key, "1")
                                    .watch(three(), 1000)
                                    .control("config-change")
                                    .watch(three(), 6000)
                                    .property(key, "4")
                                    .control("config-change")
                                    .watch(three(), 1000));
  const std::vector<std::string> expected = {
      "0 | 0 GROUP | 1 HEAD virtual | 2 HEAD virtual | 3 HEAD virtual",
      "2000 | 0 GROUP | 1 HEAD virtual",
      "6000 | 0 GROUP | 1 PROXIMITY virtual",
      "8000 | 0 GROUP | 1 PROXIMITY virtual | 2 HEAD virtual | 3 HEAD virtual | 4 ROOM virtual",
  };
  EXPECT_EQ(seen.lines, expected);
}

TEST(MultiStreamReplay, AResetGivesEveryStreamItsFirstPictureAgain) {
  const StreamLines seen =
      play(Script().watch(three(), 500).control("reset-layouts").watch(scene().person(2).at(700, 300), 500));
  const std::vector<std::string> expected = {
      "0 | 0 GROUP | 1 HEAD virtual | 2 HEAD virtual | 3 HEAD virtual",
      "500 | 0 HEAD | 1 ROOM virtual | 2 HEAD virtual | 3 ROOM virtual",
  };
  EXPECT_EQ(seen.lines, expected);
}

TEST(MultiStreamReplay, TheDebugTimersListEveryStream) {
  const StreamLines seen = play(Script().watch(three(), 100));
  ASSERT_FALSE(seen.timerStreams.empty());
  EXPECT_EQ(seen.timerStreams.front(), "0 1 2 3 ");
}

}  // namespace
}  // namespace fyn::productionrules::testing
