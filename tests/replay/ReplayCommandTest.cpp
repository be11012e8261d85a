// `prb replay` as a command: the same bytes every time, clear errors, real input.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <memory>

#include "platform/TextFile.h"
#include "tests/testing/Folders.h"
#include "tests/tools/RunPrb.h"

namespace fyn::productionrules::testing {
namespace {

namespace fs = std::filesystem;

const std::string kCases = sourceFolder() + "/tests/replay/cases/";

std::string outputOf(const std::string& command) {
  const std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen(command.c_str(), "r"), pclose);
  std::string text;
  char buffer[4096];
  while (const std::size_t size = std::fread(buffer, 1, sizeof buffer, pipe.get())) {
    text.append(buffer, size);
  }
  return text;
}

TEST(ReplayCommand, GivesTheSameBytesInOneProcessAndInAnother) {
  // One that leaves much state behind (role, cameras, waits, log level) stands between two runs of each.
  const std::string disturbing = kCases + "camera_360/recording.jsonl";
  for (const char* const name : {"every_effect", "secondary_role", "debug_dump", "configuration_reload"}) {
    const std::string recording = kCases + name + "/recording.jsonl";
    const std::vector<std::string> command{"replay",      recording, "--log",    "I",
                                           "--decisions", "--dump",  "/dev/null"};
    const PrbRun first = runPrbWith(command);
    runPrbWith({"replay", disturbing, "--log", "E"});
    EXPECT_GT(std::count(first.out.begin(), first.out.end(), '\n'), 20) << name;
    EXPECT_EQ(runPrbWith(command).out, first.out) << name;
    EXPECT_EQ(
        outputOf(programFolder() + "/prb replay " + recording + " --log I --decisions --dump /dev/null"),
        first.out)
        << name;
  }
}

TEST(ReplayCommand, LogLevelAddsLinesAndNothingElse) {
  const std::string recording = kCases + "every_effect/recording.jsonl";
  const auto without = [](std::string text) {
    std::string kept;
    for (std::size_t end = 0; !text.empty(); text.erase(0, end)) {
      end = text.find('\n') + 1;
      if (text.find("\"log\":") >= end) {
        kept += text.substr(0, end);
      }
    }
    return kept;
  };
  const std::string quiet = runPrbWith({"replay", recording}).out;
  EXPECT_EQ(without(quiet), quiet);
  for (const char* const level : {"E", "W", "I", "D"}) {
    EXPECT_EQ(without(runPrbWith({"replay", recording, "--log", level}).out), quiet) << level;
  }
}

TEST(ReplayCommand, MalformedLineEndsTheReplayWithItsPlace) {
  const std::string good =
      "{\"t\":0,\"topic\":\"/camera\",\"payload\":{\"fynCamId\":3}}\n\n"
      "{\"t\":5,\"topic\":\"/ctl\",\"payload\":\"nonsense\"}\n";
  const std::string effects = runPrbWith({"replay", "-", "--log", "E"}, good).out;
  EXPECT_NE(effects.find("unknown topic: /ctl"), std::string::npos);
  for (const char* const line : {"{\"t\":6", "{\"t\":4}", "{\"t\":6,\"provider\":\"sideways\"}"}) {
    const PrbRun run = runPrbWith({"replay", "-", "--log", "E"},
                                  good + line + "\n{\"t\":9,\"topic\":\"/ctl\",\"payload\":\"later\"}\n");
    EXPECT_EQ(run.status, 2) << line;
    EXPECT_EQ(run.out, effects) << line;
    EXPECT_NE(run.err.find(":4: "), std::string::npos) << line << " said: " << run.err;
    EXPECT_EQ(std::count(run.err.begin(), run.err.end(), '\n'), 1) << run.err;
  }
}

/** A recording and what a service said on it, a second later each time and with its own clock and count. */
std::string withOutputs(const std::string& recording, const std::string& changed, const std::string& into) {
  std::string text;
  std::int64_t last = 0;
  for (const std::string& line : {recording, runPrbWith({"replay", "-"}, recording).out}) {
    std::istringstream lines(line);
    for (std::string each; std::getline(lines, each);) {
      nlohmann::ordered_json event = nlohmann::ordered_json::parse(each);
      const bool isEffect = &line != &recording && event.contains("topic");
      if (each.find("\"subscribe\"") != std::string::npos ||
          each.find("\"advertise\"") != std::string::npos || event.contains("provider")) {
        continue;
      }
      last = std::max(last, event.at("t").get<std::int64_t>());
      event["t"] = isEffect ? last : event.at("t").get<std::int64_t>();
      std::string said = event.dump();
      if (const std::size_t at = said.find(changed);
          isEffect && !changed.empty() && at != std::string::npos) {
        said.replace(at, changed.size(), into);
      }
      text += said + '\n';
    }
  }
  return text;
}

TEST(ReplayCommand, ComparesWhatTheServiceSaidWithTheReplay) {
  const std::string recording = readTextFile(kCases + "person_joins/recording.jsonl").value_or("");
  const PrbRun same = runPrbWith({"replay", "-", "--check"}, withOutputs(recording, "", ""));
  EXPECT_EQ(same.status, 0) << same.out;
  EXPECT_NE(same.out.find("are the same in the replay"), std::string::npos) << same.out;
  const PrbRun clock = runPrbWith({"replay", "-", "--check"},
                                  withOutputs(recording, "\"sceneNumber\":1", "\"sceneNumber\":77"));
  EXPECT_EQ(clock.out, same.out);
  const PrbRun other =
      runPrbWith({"replay", "-", "--check"}, withOutputs(recording, "\"face_count\":1", "\"face_count\":5"));
  EXPECT_EQ(other.status, 1) << other.out;
  EXPECT_NE(other.out.find("recording and replay differ from "), std::string::npos) << other.out;
  EXPECT_NE(other.out.find("/PeopleCount\n  recorded: {\"face_count\":5"), std::string::npos) << other.out;
  EXPECT_EQ(runPrbWith({"replay", "-", "--check"}, recording).status, 1);
}

TEST(ReplayCommand, HeadsOutsideOfAnImageOfUnknownSizeAreTold) {
  const std::string head =
      R"({"t":7,"topic":"/ICDOut","payload":{"heads":[{"fynId":1,"associatedHeads":[{"fynCamId":2,)"
      R"("bbox":{"left":1800,"top":10,"right":1900,"bottom":90}}]}]}})"
      "\n";
  const std::string size =
      R"({"t":0,"topic":"/cameraParameters/head/2","payload":{"imageWidth":1920,"imageHeight":1080}})"
      "\n";
  const PrbRun without = runPrbWith({"replay", "-"}, head);
  EXPECT_NE(without.err.find("the image size of camera 2, so 1280 x 720 is assumed"), std::string::npos)
      << without.err;
  EXPECT_EQ(runPrbWith({"replay", "-"}, size + head).err, "");
}

TEST(ReplayCommand, CommandLineSettingsAreInForceAtTheStart) {
  const std::string config = ::testing::TempDir() + "replay_command.conf";
  FILE* const file = std::fopen(config.c_str(), "w");
  ASSERT_NE(file, nullptr);
  std::fputs("persist.tvpr.logs=1\n", file);
  std::fclose(file);
  const PrbRun run = runPrbWith(
      {"replay", "-", "--log", "I", "--config", config, "--property", "vendor.fynpilot.fynOperatingMode=2"},
      "{\"t\":0,\"topic\":\"/camera\",\"payload\":{\"fynCamId\":4}}\n");
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_NE(run.out.find("\"subscribe\":\"/PRBOutSecondary/4\""), std::string::npos) << run.out;
  EXPECT_EQ(run.out.find("\"log\":\"I\",\"tag\":\"ProductionRulesIPCService\""), std::string::npos)
      << run.out;
  fs::remove(config);
}

}  // namespace
}  // namespace fyn::productionrules::testing
