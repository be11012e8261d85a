#include <gtest/gtest.h>

#include <csignal>
#include <fstream>

#include "tests/linux/Servers.h"

namespace fyn::productionrules::testing {
namespace {

const std::string kPrb = PR_PROGRAM_DIR "/prb";

std::vector<std::string> linesOf(const std::string& path) {
  std::ifstream file(path);
  std::vector<std::string> lines;
  for (std::string line; std::getline(file, line);) {
    lines.push_back(line);
  }
  return lines;
}

/** The lines without their times, which depend on the machine. */
std::vector<std::string> withoutTimes(std::vector<std::string> lines) {
  for (std::string& line : lines) {
    line.erase(0, line.find(','));
  }
  return lines;
}

/** A broker, and `prb record` on it that has begun. */
class LiveTools : public ::testing::Test {
 protected:
  LiveTools() {
    // Under nohup it would be ignored.
    std::signal(SIGHUP, SIG_DFL);
    mRecorder = std::make_unique<Process>(
        std::vector<std::string>{kPrb, "record", "--bus", mBroker.url("room"), "-o", recording()});
    EXPECT_TRUE(
        eventually([this] { return mRecorder->errorText().find("recording to") != std::string::npos; }));
  }

  std::string recording() const { return mFolder.file("recorded.jsonl"); }

  std::vector<std::string> endRecording(int signal) {
    mRecorder->signal(signal);
    EXPECT_EQ(mRecorder->wait(), 0) << mRecorder->errorText();
    return linesOf(recording());
  }

  Broker mBroker;
  ScratchFolder mFolder;
  std::unique_ptr<Process> mRecorder;
};

TEST_F(LiveTools, APlayedMeetingIsRecordedWhole) {
  const std::string meeting = mFolder.file("meeting.jsonl");
  runTool({kPrb, "simulate", "--seed", "3", "--minutes", "1", "--no-truth", "-o", meeting});
  runTool({kPrb, "play", meeting, "--bus", mBroker.url("room"), "--speed", "30"});
  EXPECT_EQ(withoutTimes(endRecording(SIGINT)), withoutTimes(linesOf(meeting)));
}

TEST_F(LiveTools, ControlCommandsAreMessages) {
  const std::string store = mFolder.file("properties.db");
  for (const char* const command : {"reset-layouts", "dump-debug", "record-start", "record-stop"}) {
    runTool({kPrb, "ctl", command, "--bus", mBroker.url("room"), "--properties", store});
  }
  runTool({kPrb, "ctl", "mode", "people", "--bus", mBroker.url("room"), "--properties", store});
  EXPECT_EQ(withoutTimes(endRecording(SIGTERM)),
            (std::vector<std::string>{
                R"(,"topic":"/ctl","payload":"reset-layouts"})", R"(,"topic":"/ctl","payload":"dump-debug"})",
                R"(,"topic":"/ctl/recordStart","payload":""})", R"(,"topic":"/ctl/recordStop","payload":""})",
                R"(,"topic":"/ctl","payload":"config-change"})"}));
  Process get({kPrb, "prop", "get", "vendor.talkertracking.flag", "--properties", store});
  EXPECT_EQ(get.wait(), 0);
  EXPECT_EQ(get.outputLines(), std::vector<std::string>{"4"});
}

TEST_F(LiveTools, WatchPrintsPlainLinesIntoAPipe) {
  Process watch({kPrb, "watch", "--bus", mBroker.url("room")});
  const std::string count = mFolder.write(
      "count.jsonl",
      "{\"t\":0,\"topic\":\"/PeopleCount\",\"payload\":{\"face_count\":3,\"smallestFaceHeight\":9}}\n");
  // The subscription is in force at a moment that only its effect shows.
  EXPECT_TRUE(eventually([&] {
    runTool({kPrb, "play", count, "--bus", mBroker.url("room")});
    return !watch.outputLines().empty();
  }));
  EXPECT_EQ(watch.outputLines().front(), "people 3");
  watch.signal(SIGTERM);
  EXPECT_EQ(watch.wait(), 0);
}

TEST_F(LiveTools, ARecorderToWhichNothingComesSaysSoAndFails) {
  const std::string meeting = mFolder.write("meeting.jsonl", "kept");
  Process mistyped({kPrb, "record", "--bus", mBroker.url("rom"), "-o", meeting, "--force", "--seconds", "4"});
  EXPECT_EQ(mistyped.wait(), 1);
  EXPECT_NE(mistyped.errorText().find("nothing has come within 3 s; is " + mBroker.url("rom")),
            std::string::npos);
  EXPECT_NE(mistyped.errorText().find("was not written"), std::string::npos) << mistyped.errorText();
  EXPECT_EQ(mFolder.read("meeting.jsonl"), "kept");
}

TEST_F(LiveTools, WhatTheBrokerNeverTookIsCounted) {
  std::string lines;
  constexpr int kMessages = 500;
  for (int t = 0; t < kMessages; ++t) {
    lines += "{\"t\":" + std::to_string(10 * t) + ",\"topic\":\"/ctl\",\"payload\":\"x\"}\n";
  }
  Process play({kPrb, "play", mFolder.write("many.jsonl", lines), "--bus", mBroker.url("room")});
  EXPECT_TRUE(eventually([this] { return !linesOf(recording()).empty(); }));
  mBroker.kill();
  EXPECT_EQ(play.wait(), 1);
  EXPECT_NE(play.errorText().find("500 messages played"), std::string::npos) << play.errorText();
  EXPECT_NE(play.errorText().find("of them were never taken by the broker"), std::string::npos)
      << play.errorText();
}

TEST(LiveToolsWithoutBroker, ABusThatDoesNotAnswerIsAFailure) {
  const std::string nobody = "mqtt://127.0.0.1:" + std::to_string(freePort());
  Process ctl({kPrb, "ctl", "reset-layouts", "--bus", nobody});
  EXPECT_EQ(ctl.wait(), 1);
  EXPECT_NE(ctl.errorText().find("the bus " + nobody + " does not answer"), std::string::npos)
      << ctl.errorText();
}

}  // namespace
}  // namespace fyn::productionrules::testing
