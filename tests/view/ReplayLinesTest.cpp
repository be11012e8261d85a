// What a replay looks like to the page: the recording, and everything that the service did on it, in time.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <set>

#include "platform/TextFile.h"
#include "tests/testing/Folders.h"
#include "tests/testing/ScratchFolder.h"
#include "tests/tools/RunPrb.h"
#include "tests/view/NotedLines.h"
#include "tools/view/RecordingPlay.h"

namespace fyn::productionrules::testing {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;

const std::string kCases = sourceFolder() + "/tests/replay/cases";

bool isOf(const json& line, std::initializer_list<const char*> topics) {
  return line.contains("topic") &&
         std::any_of(topics.begin(), topics.end(), [&](const char* topic) { return line["topic"] == topic; });
}

/** Decisions and scenes: what the page and `prb replay` must tell alike. */
std::vector<std::string> outcome(const std::vector<std::string>& lines) {
  std::vector<std::string> kept;
  for (const std::string& text : lines) {
    const json line = json::parse(text);
    if (line.contains("decision")) {
      kept.push_back(line["t"].dump() + line["decision"].dump());
    } else if (isOf(line, {"/PRBOut", "/PRBOutDebug", "/PeopleCount"})) {
      kept.push_back(text);
    }
  }
  return kept;
}

std::vector<std::string> texts(const std::vector<ViewLine>& lines) {
  std::vector<std::string> found;
  for (const ViewLine& line : lines) {
    found.push_back(line.text);
  }
  return found;
}

std::string meeting(int people = 4) {
  return runPrbWith({"simulate", "--seed", "5", "--minutes", "2", "--people", std::to_string(people),
                     "--noise", "none", "-o", "-"})
      .out;
}

TEST(ReplayLines, TellTheSameDecisionsAndScenesAsAReplay) {
  std::size_t decisions = 0;
  for (const fs::directory_entry& folder : fs::directory_iterator(kCases)) {
    const std::string path = folder.path().string() + "/recording.jsonl";
    const PrbRun replay = runPrbWith({"replay", path, "--decisions", "--dump", "/dev/null"});
    ASSERT_EQ(replay.status, 0) << path << replay.err;
    const std::vector<ViewLine> lines = linesOfReplay(readTextFile(path).value());
    EXPECT_EQ(outcome(texts(lines)), outcome(linesOf(replay.out))) << path;
    EXPECT_TRUE(std::is_sorted(lines.begin(), lines.end(), [](const ViewLine& a, const ViewLine& b) {
      return a.t < b.t;
    })) << path;
    for (const ViewLine& line : lines) {
      ASSERT_EQ(json::parse(line.text).at("t"), line.t) << line.text;
    }
    decisions += outcome(linesOf(replay.out)).size();
  }
  EXPECT_GT(decisions, 100U);
}

TEST(ReplayLines, TellWhoWroteTheRecordingAndNothingOfTheTruth) {
  const std::string plain = readTextFile(kCases + "/every_effect/recording.jsonl").value();
  const std::string by = R"({"t":0,"recorded":{"by":"test"}})";
  std::string remarked = by + "\n";
  for (const std::string& line : linesOf(plain)) {
    remarked += line + "\n" + json{{"t", json::parse(line).at("t")}, {"truth", json::array()}}.dump() + "\n";
  }
  std::vector<std::string> expected = texts(linesOfReplay(plain));
  expected.insert(expected.begin(), by);
  EXPECT_EQ(texts(linesOfReplay(remarked)), expected);
  EXPECT_EQ(runPrbWith({"replay", "-"}, remarked).out, runPrbWith({"replay", "-"}, plain).out);
}

TEST(ReplayLines, AWaitIsToldWhenItBeginsAndRunsOnUntold) {
  const std::vector<std::string> lines =
      texts(linesOfReplay(meeting(), {{"vendor.talkertracking.flag", "4"}}));
  std::size_t waits = 0;
  std::size_t pending = 0;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const json line = json::parse(lines[i]);
    waits += isOf(line, {"/TimerDebug"}) ? 1 : 0;
    if (!line.contains("decision") || line["decision"]["kind"] != "pending" ||
        line["decision"].value("waitMs", 0) == 0) {
      continue;
    }
    ++pending;
    const auto next =
        std::find_if(lines.begin() + static_cast<std::ptrdiff_t>(i), lines.end(),
                     [](const std::string& text) { return isOf(json::parse(text), {"/TimerDebug"}); });
    ASSERT_NE(next, lines.end());
    const json document = json::parse(*next);
    EXPECT_EQ(document["t"], line["t"]);
    const json layout = document["payload"]["nextLayout"]["layouts"].at(0);
    EXPECT_EQ(layout["layoutType"], line["decision"]["to"]);
    EXPECT_EQ(layout["layoutTimer"], line["decision"]["waitMs"]) << *next;
  }
  EXPECT_GT(pending, 2U);
  // 1800 vision results; a wait that only runs on makes no line.
  EXPECT_LT(waits, lines.size() / 8);
}

TEST(ReplayLines, FramesStandForWhatTheSceneShows) {
  const std::vector<std::string> lines =
      texts(linesOfReplay(meeting(), {{"vendor.talkertracking.flag", "4"}}));
  json scene;
  std::size_t compared = 0;
  std::size_t bounds = 0;
  for (const std::string& text : lines) {
    json line = json::parse(text);
    if (isOf(line, {"/PRBOut"})) {
      scene = line["payload"]["streams"][0]["scene"];
    } else if (line.contains("frames") && !line["frames"].empty()) {
      ASSERT_EQ(line["frames"].size(), scene.size()) << text;
      for (const json& frame : line["frames"]) {
        const json& source = scene[frame["frameindex"].get<std::size_t>()]["source"];
        if (frame.contains("offCenterBound")) {
          ++bounds;
          EXPECT_EQ(frame["offCenterBound"]["top"], source["yoffset"]) << text;
          EXPECT_GE(frame["offCenterBound"]["left"], source["xoffset"]) << text;
        }
        compared += frame["heads"].size();
      }
    }
  }
  EXPECT_GT(compared, 10U);
  EXPECT_GT(bounds, 2U);
}

TEST(ReplayLines, WhatTheDeviceItselfDecidedGivesWayToTheReplay) {
  const std::string recorded =
      R"({"t":0,"topic":"/PRBOut","payload":{"version":9}})"
      "\n"
      R"({"t":5,"topic":"/PeopleCount","payload":{"face_count":77,"smallestFaceHeight":1}})"
      "\n"
      R"({"t":9,"topic":"/ICDOut","payload":{"frameNumber":1,"heads":[]}})"
      "\n";
  const std::vector<std::string> lines = texts(linesOfReplay(recorded));
  const auto holding = [&](const char* part) {
    return std::count_if(lines.begin(), lines.end(),
                         [part](const std::string& line) { return line.find(part) != std::string::npos; });
  };
  EXPECT_EQ(holding("\"version\":9"), 0);
  EXPECT_EQ(holding("\"face_count\":77"), 0);
  EXPECT_EQ(holding("\"notice\""), 1);
  EXPECT_EQ(holding("/PRBOut"), 1);
}

TEST(ReplayLines, ASecondRoundGoesOnWhereTheFirstEnded) {
  NotedLines noted;
  ReplayLines lines(noted, 60000);
  Replay replay({}, lines);
  lines.watch(replay);
  lines.handle({40, BusMessage{"/ICDOut", R"({"frameNumber":1,"heads":[]})"}});
  EXPECT_EQ(noted.lines.front().text.substr(0, 12), R"({"t":60040,")");
  EXPECT_EQ(lines.now(), 60040);
}

/** All that a page reads of a recording. */
std::string playedLines(const std::string& recording) {
  const ScratchFolder folder;
  std::istringstream in;
  std::ostringstream out;
  std::ostringstream err;
  PrbContext context{in, out, err};
  InputFile input(folder.write("recording.jsonl", recording), in);
  LineLog log = LineLog::ofRecording();
  EXPECT_TRUE(playRecording(input, {}, log, context, [] { return false; }));
  std::string all;
  const std::unique_ptr<LineLog::Reader> stream = log.open("");
  while (const std::optional<std::string> piece = stream->next(std::chrono::seconds(20))) {
    all += *piece;
  }
  return all;
}

TEST(RecordingPlay, MalformedLinesBecomeNoticesAndTheRestIsShown) {
  const std::string good = R"({"t":33,"topic":"/ICDOut","payload":{"frameNumber":1,"heads":[]}})";
  const std::string late = R"({"t":99,"topic":"/ICDOut","payload":{"frameNumber":2,"heads":[]}})";
  for (const char* const bad : {"{\"t\":50", "nothing", R"({"t":1,"topic":"/ICDOut","payload":{}})", "[]",
                                R"({"t":50,"payload":{}})", "\xff\xfe", R"({"t":50,"colour":"red"})"}) {
    const std::vector<std::string> lines = linesOf(playedLines(good + '\n' + bad + '\n' + late + '\n'));
    std::vector<std::string> notices;
    for (const std::string& line : lines) {
      const json read = json::parse(line);
      if (read.contains("notice")) {
        notices.push_back(read["notice"]);
      }
    }
    ASSERT_EQ(notices.size(), 1U) << bad;
    EXPECT_NE(notices[0].find("recording.jsonl:2: "), std::string::npos) << notices[0];
    EXPECT_NE(std::find(lines.begin(), lines.end(), late), lines.end()) << bad;
  }
}

TEST(RecordingPlay, VeryManyFaultsAreSummedUp) {
  std::string recording;
  for (int i = 0; i < 5000; ++i) {
    recording += "no line\n";
  }
  const std::vector<std::string> lines = linesOf(playedLines(recording));
  EXPECT_LT(lines.size(), 150U);
  EXPECT_NE(lines.back().find("in all, 5000 lines"), std::string::npos) << lines.back();
}

}  // namespace
}  // namespace fyn::productionrules::testing
