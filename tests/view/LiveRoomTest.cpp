// A live bus as the page sees it: its messages, and the reasons of the shadow beside them.
#include <gtest/gtest.h>

#include "platform/MemoryPropertyStore.h"
#include "tests/tools/RunPrb.h"
#include "tests/tools/TemporaryFolder.h"
#include "tests/view/NotedLines.h"
#include "tools/recording/RecordingReader.h"
#include "tools/view/LiveRoom.h"

namespace fyn::productionrules::testing {
namespace {

using nlohmann::json;

std::string meeting() {
  return runPrbWith(
             {"simulate", "--seed", "5", "--minutes", "1", "--people", "3", "--noise", "none", "-o", "-"})
      .out;
}

/** A room whose clock the messages drive. */
class Room {
 public:
  explicit Room(ShadowSettings settings = {})
      : mRoom(
            noted, [this] { return mNow; }, std::move(settings)) {}

  void send(std::int64_t t, const std::string& topic, const std::string& text) {
    mNow = t;
    mRoom.onMessage(topic, text);
  }

  void play(const std::string& recording, std::int64_t start = 0) {
    std::istringstream input(recording);
    RecordingReader reader(input, "recording");
    for (RecordingEvent event; reader.next(event);) {
      if (const auto* const message = std::get_if<BusMessage>(&event.what)) {
        send(start + event.t, message->topic, message->payload);
      }
    }
  }

  NotedLines noted;

 private:
  std::int64_t mNow = 0;
  LiveRoom mRoom;
};

TEST(LiveRoom, TheShadowDecidesAsAReplayOfTheSameMessagesDoes) {
  const std::string recording = meeting();
  const TemporaryFolder folder;
  const std::string quick =
      folder.write("quick.conf", "persist.fdtimers.layout.roomtoother=1000\npersist.fdtimers.unknown=1\n");
  Room room({quick, nullptr, {{"vendor.talkertracking.flag", "4"}}});
  room.play(recording);
  const PrbRun replay = runPrbWith({"replay", folder.write("m.jsonl", recording), "--decisions", "--config",
                                    quick, "--property", "vendor.talkertracking.flag=4"});
  std::vector<std::string> expected;
  for (const std::string& line : linesOf(replay.out)) {
    if (line.find("\"decision\"") != std::string::npos) {
      expected.push_back(line);
    }
  }
  EXPECT_GT(expected.size(), 5U);
  EXPECT_EQ(room.noted.with("\"decision\""), expected);
  // What the shadow publishes goes nowhere.
  EXPECT_TRUE(room.noted.with("/PRBOut").empty());
  EXPECT_TRUE(room.noted.with("/PeopleCount").empty());
  EXPECT_EQ(room.noted.with("/ICDOut").size(), 1800U);
}

TEST(LiveRoom, TheShadowFollowsTheModeOfTheLiveScenes) {
  Room room;
  room.send(0, "/PRBOut",
            R"({"version":1,"streams":[{"streamid":0,"TrackingMode":"PeopleFraming","scene":[]}]})");
  room.play(meeting());
  // Group framing never has a second frame.
  const std::size_t tiled = room.noted.with("\"frameindex\":1").size();
  EXPECT_GT(tiled, 0U);
  room.send(70000, "/ctl/tracking-mode", "GroupFraming");
  const std::size_t adopted = room.noted.with("\"kind\":\"adopted\"").size();
  room.play(meeting(), 80000);
  EXPECT_GT(room.noted.with("\"kind\":\"adopted\"").size(), adopted);
  EXPECT_EQ(room.noted.with("\"frameindex\":1").size(), tiled);
}

TEST(LiveRoom, PropertiesOfTheMachineAreReadAgainWhenTheServiceReloads) {
  MemoryPropertyStore machine;
  machine.set("vendor.talkertracking.flag", "1");
  Room room({"", &machine, {}});
  const std::string recording = meeting();
  room.play(recording);
  EXPECT_TRUE(room.noted.with("\"frameindex\":1").empty());
  machine.set("vendor.talkertracking.flag", "4");
  room.send(70000, "/ctl", "config-change");
  room.play(recording, 80000);
  EXPECT_FALSE(room.noted.with("\"frameindex\":1").empty());
  // The shadow's own settings never reach the machine.
  EXPECT_EQ(machine.get("vendor.talkertracking.flag"), "4");
}

TEST(LiveRoom, LiveWaitsTakeThePlaceOfTheShadows) {
  Room room;
  const std::string recording = meeting();
  room.play(recording);
  EXPECT_GT(room.noted.with("/TimerDebug").size(), 2U);
  room.send(70000, "/TimerDebug", R"({"currentLayout":{"layouts":[]},"nextLayout":{"layouts":[]}})");
  const std::size_t before = room.noted.with("/TimerDebug").size();
  room.send(71000, "/ctl", "reset-layouts");
  room.play(recording, 80000);
  EXPECT_EQ(room.noted.with("/TimerDebug").size(), before);
}

TEST(LiveRoom, HostileMessagesEndNothing) {
  Room room;
  std::int64_t t = 0;
  const std::string deep(200000, '[');
  for (const std::string& text :
       {std::string(), std::string("{"), std::string("\xff\xfe\n"), deep, std::string(2'000'000, 'x'),
        std::string(R"({"TrackingMode":7})"), std::string(R"({"heads":7,"streams":{"TrackingMode":""}})")}) {
    for (const std::string_view topic : LiveRoom::kTopics) {
      room.send(++t, std::string(topic), text);
    }
    room.send(++t, "/ctl/tracking-mode", text);
  }
  for (const ViewLine& line : room.noted.lines) {
    EXPECT_LT(line.text.size(), 1'100'000U);
    EXPECT_EQ(line.text.find('\n'), std::string::npos);
    EXPECT_TRUE(json::accept(line.text) || line.text.size() > 100000) << line.text.substr(0, 200);
  }
  EXPECT_EQ(room.noted.with("2000000 bytes").size(), LiveRoom::kTopics.size() + 1);
  room.play(meeting(), 1000);
  EXPECT_GT(room.noted.with("\"decision\"").size(), 5U);
}

}  // namespace
}  // namespace fyn::productionrules::testing
