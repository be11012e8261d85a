#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <fstream>

#include "tests/linux/Servers.h"
#include "tests/testing/Folders.h"

namespace fyn::productionrules::testing {
namespace {

const std::string kPrb = programFolder() + "/prb";

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

/** What a recording begins with in LiveTools. */
const std::vector<std::string> kSettings{R"(,"property":{"vendor.talkertracking.flag":"2"}})",
                                         R"(,"config":{"animation.ease.duration":"7"}})"};

/** A broker, and `prb record` on it that has begun. */
class LiveTools : public ::testing::Test {
 protected:
  LiveTools() {
    // Under nohup it would be ignored.
    std::signal(SIGHUP, SIG_DFL);
    runTool({kPrb, "prop", "set", "vendor.talkertracking.flag", "2", "--properties", store()});
    mRecorder = std::make_unique<Process>(std::vector<std::string>{
        kPrb, "record", "--bus", mBroker.url("room"), "-o", recording(), "--outputs", "--properties", store(),
        "--config", mFolder.write("fyn.conf", "# two\nanimation.ease.duration = 7\n")});
    EXPECT_TRUE(
        eventually([this] { return mRecorder->errorText().find("recording to") != std::string::npos; }));
  }

  std::string recording() const { return mFolder.file("recorded.jsonl"); }
  std::string store() const { return mFolder.file("properties.db"); }

  std::vector<std::string> endRecording(int signal) {
    mRecorder->signal(signal);
    EXPECT_EQ(mRecorder->wait(), 0) << mRecorder->errorText();
    std::vector<std::string> lines = linesOf(recording());
    EXPECT_EQ(lines.front().rfind("{\"t\":0,\"recorded\":{\"by\":\"prb ", 0), 0U) << lines.front();
    lines.erase(lines.begin());
    return lines;
  }

  Broker mBroker;
  ScratchFolder mFolder;
  std::unique_ptr<Process> mRecorder;
};

TEST_F(LiveTools, APlayedMeetingIsRecordedWhole) {
  const std::string meeting = mFolder.file("meeting.jsonl");
  runTool({kPrb, "simulate", "--seed", "3", "--minutes", "1", "--no-truth", "-o", meeting});
  runTool({kPrb, "play", meeting, "--bus", mBroker.url("room"), "--speed", "30"});
  std::vector<std::string> expected = kSettings;
  for (const std::string& line : withoutTimes(linesOf(meeting))) {
    expected.push_back(line);
  }
  EXPECT_EQ(withoutTimes(endRecording(SIGINT)), expected);
}

TEST_F(LiveTools, ControlCommandsAreMessages) {
  for (const char* const command : {"reset-layouts", "dump-debug", "record-start", "record-stop"}) {
    runTool({kPrb, "ctl", command, "--bus", mBroker.url("room"), "--properties", store()});
  }
  std::vector<std::string> expected = kSettings;
  for (const char* const line :
       {R"(,"topic":"/ctl","payload":"reset-layouts"})", R"(,"topic":"/ctl","payload":"dump-debug"})",
        R"(,"topic":"/ctl/recordStart","payload":""})", R"(,"topic":"/ctl/recordStop","payload":""})"}) {
    expected.emplace_back(line);
  }
  EXPECT_EQ(withoutTimes(endRecording(SIGTERM)), expected);
}

TEST_F(LiveTools, AModeThatNoServiceTakesIsTakenBack) {
  Process mode({kPrb, "ctl", "mode", "people", "--bus", mBroker.url("room"), "--properties", store()});
  EXPECT_EQ(mode.wait(), 1);
  EXPECT_NE(mode.errorText().find("no vision result has come"), std::string::npos) << mode.errorText();
  Process get({kPrb, "prop", "get", "vendor.talkertracking.flag", "--properties", store()});
  EXPECT_EQ(get.wait(), 0);
  EXPECT_EQ(get.outputLines(), std::vector<std::string>{"2"});
  // The recording tells both changes where the service would see them.
  std::vector<std::string> expected;
  for (const char* const value : {"4", "2"}) {
    expected.push_back(std::string(R"(,"property":{"vendor.talkertracking.flag":")") + value + R"("}})");
    expected.push_back(kSettings[1]);
    expected.emplace_back(R"(,"topic":"/ctl","payload":"config-change"})");
  }
  EXPECT_EQ(withoutTimes(endRecording(SIGTERM)), expected);
}

TEST_F(LiveTools, AModeIsInForceWhenTheServiceSaysSo) {
  const std::string meeting = mFolder.file("meeting.jsonl");
  runTool({kPrb, "simulate", "--seed", "3", "--minutes", "1", "-o", meeting});
  Process service({programFolder() + "/productionrulesd", "--bus", mBroker.url("room"), "--properties",
                   store(), "--config", mFolder.file("fyn.conf"), "--log", "stderr"});
  Process vision({kPrb, "play", meeting, "--bus", mBroker.url("room"), "--loop"});
  ASSERT_TRUE(eventually([this] {
    const std::vector<std::string> lines = linesOf(recording());
    return std::any_of(lines.begin(), lines.end(),
                       [](const std::string& line) { return line.find("/PRBOut") != std::string::npos; });
  })) << service.errorText();
  runTool({kPrb, "ctl", "mode", "people", "--bus", mBroker.url("room"), "--properties", store()});
  // Another store is that of another device.
  Process elsewhere(
      {kPrb, "ctl", "mode", "group", "--bus", mBroker.url("room"), "--properties", mFolder.file("other.db")});
  EXPECT_EQ(elsewhere.wait(), 1);
  EXPECT_NE(elsewhere.errorText().find("goes on in PeopleFraming: it reads other properties"),
            std::string::npos)
      << elsewhere.errorText();
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
  EXPECT_NE(watch.outputLines().front().find(" people 3"), std::string::npos);
  EXPECT_EQ(watch.errorText(), "");
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

TEST(CheckFeed, WatchesABus) {
  Broker broker;
  const std::vector<std::string> command{kPrb, "check-feed", "--bus", broker.url("room"), "--seconds", "1"};
  const auto finds = [&command](const std::string& fault) {
    Process check(command);
    const int status = check.wait();
    const std::vector<std::string> lines = check.outputLines();
    return status == 1 && std::any_of(lines.begin(), lines.end(), [&](const std::string& line) {
             return line.find(fault) != std::string::npos;
           });
  };
  EXPECT_TRUE(eventually([&] { return finds("no vision result has come"); }));
  ScratchFolder folder;
  const std::string feed = folder.write(
      "feed.jsonl", R"({"t":0,"topic":"/ICDOut","payload":{"frameNumber":1,"heads":[],"hats":2}})"
                    "\n{\"t\":30}\n");
  Process vision({kPrb, "play", feed, "--bus", broker.url("room"), "--loop"});
  EXPECT_TRUE(eventually([&] { return finds("hats is not known"); }));
}

}  // namespace
}  // namespace fyn::productionrules::testing
