#include <gtest/gtest.h>

#include <filesystem>

#include "platform/StderrLog.h"
#include "platform/virtual/VirtualTime.h"
#include "tests/testing/ScratchFolder.h"
#include "tests/tools/RunPrb.h"
#include "tools/live/Recorder.h"
#include "tools/live/WatchState.h"

namespace fyn::productionrules::testing {
namespace {

TEST(Record, WritesWhatItReceives) {
  const ScratchFolder folder;
  std::int64_t now = 5000;
  Recorder recorder({folder.file("room.jsonl"), 0, 1}, [&now] { return now; });
  recorder.onMessage("/ctl", "config-change");
  now += 40;
  recorder.onMessage("/ICDOut", "{\"heads\": []}");
  recorder.finish();
  EXPECT_EQ(recorder.messages(), 2U);
  EXPECT_EQ(folder.read("room.jsonl"),
            "{\"t\":0,\"topic\":\"/ctl\",\"payload\":\"config-change\"}\n"
            "{\"t\":40,\"topic\":\"/ICDOut\",\"payload\":{\"heads\":[]}}\n");
}

TEST(Record, EachRotatedFileCanBeReplayedAlone) {
  const ScratchFolder folder;
  std::int64_t now = 0;
  Recorder recorder({folder.file("room.jsonl"), 200, 3}, [&now] { return now++; });
  const std::string camera = R"(,"topic":"/camera","payload":{"fynCamId":0}})";
  recorder.onMessage("/camera", "{\"fynCamId\":0}");
  constexpr int kMessages = 12;
  for (int i = 0; i < kMessages; ++i) {
    recorder.onMessage("/ICDOut", "{\"frameNumber\":" + std::to_string(i) + ",\"heads\":[]}");
  }
  recorder.finish();
  std::string all;
  for (const char* const name : {"room.jsonl.2", "room.jsonl.1", "room.jsonl"}) {
    const std::string text = folder.read(name);
    EXPECT_NE(text.find(camera), std::string::npos) << name;
    EXPECT_LT(text.find(camera), text.find("/ICDOut")) << name;
    all += text;
  }
  EXPECT_FALSE(std::filesystem::exists(folder.file("room.jsonl.3")));
  // The newest messages are all there, in order.
  std::size_t position = 0;
  for (int i = kMessages - 5; i < kMessages; ++i) {
    const std::size_t found = all.find("\"frameNumber\":" + std::to_string(i) + ",", position);
    ASSERT_NE(found, std::string::npos) << i << " in\n" << all;
    position = found;
  }
}

TEST(Record, WithoutALimitOfFilesNothingIsDeleted) {
  const ScratchFolder folder;
  Recorder recorder({folder.file("room.jsonl"), 1, 0}, [] { return std::int64_t{0}; });
  constexpr int kMessages = 5;
  for (int i = 0; i < kMessages; ++i) {
    recorder.onMessage("/ctl", std::to_string(i));
  }
  recorder.finish();
  for (int i = 0; i < kMessages; ++i) {
    const std::string name =
        "room.jsonl" + (i + 1 < kMessages ? "." + std::to_string(kMessages - 1 - i) : "");
    EXPECT_EQ(folder.read(name), "{\"t\":0,\"topic\":\"/ctl\",\"payload\":\"" + std::to_string(i) + "\"}\n");
  }
}

TEST(Record, AFileThatCannotBeMovedAwayIsNotOverwritten) {
  const ScratchFolder folder;
  folder.write("room.jsonl.1", "older");
  std::filesystem::create_directory(folder.file("room.jsonl.2"));
  Recorder recorder({folder.file("room.jsonl"), 1, 3, {true, {}}}, [] { return std::int64_t{0}; });
  recorder.onMessage("/ctl", "first");
  recorder.onMessage("/ctl", "second");
  EXPECT_TRUE(recorder.hasFailed());
  EXPECT_THROW(recorder.finish(), std::runtime_error);
  EXPECT_EQ(folder.read("room.jsonl"), "{\"t\":0,\"topic\":\"/ctl\",\"payload\":\"first\"}\n");
  EXPECT_EQ(folder.read("room.jsonl.1"), "older");
}

TEST(Record, AFullDiskIsNoSilentLoss) {
  if (!std::filesystem::exists("/dev/full")) {
    GTEST_SKIP() << "skipped: no /dev/full";
  }
  Recorder recorder({"/dev/full", 0, 1}, [] { return std::int64_t{0}; });
  recorder.onMessage("/ctl", "reset-layouts");
  EXPECT_THROW(recorder.finish(), std::runtime_error);
  EXPECT_TRUE(recorder.hasFailed());
}

constexpr std::int64_t kWallMs = 1769862896789;

constexpr const char* kScene =
    R"({"version":1,"streams":[{"streamid":0,"TrackingMode":"GroupFraming","layoutType":"GROUP",)"
    R"("animation":"cut","scene":[{"cameraid":0,"source":{"xoffset":10,"yoffset":20,"width":640,"height":360},)"
    R"("dest":{"xoffset":0,"yoffset":0,"width":1280,"height":720}},{"debugBounds":{}}]}]})";

TEST(Watch, OneScreenSaysWhatTheServiceDoes) {
  WatchState state(std::make_shared<VirtualTime>(0, kWallMs));
  state.onMessage("/PRBOut", kScene);
  state.onMessage(
      "/ICDOut",
      R"({"heads":[{"fynId":1,"associatedHeads":[{"isSpeaker":true},{"isSpeaker":true}]},{"fynId":2}]})");
  state.onMessage("/TimerDebug",
                  R"({"currentLayout":{"layouts":[{"layoutType":"GROUP","layoutTimer":0,"frames":[)"
                  R"({"frameindex":0,"headPosition":"HEAD_OUTSIDE","frameTimer":1950}]}]},)"
                  R"("nextLayout":{"layouts":[{"layoutType":"HEAD","layoutTimer":7999,"frames":[]}]}})");
  state.onMessage("/PRBDecisions", R"({"kind":"feedPriority","frameindex":1})");
  state.onMessage("/PRBDecisions", R"({"kind":"reframeWait","frameindex":1,"headPosition":"HEAD_OUTSIDE"})");
  EXPECT_EQ(state.screen(500),
            "Mode    GroupFraming\n"
            "People  2 in view, 1 speaking\n"
            "Picture\n"
            "  stream 0: GROUP by cut\n"
            "    camera 0 640x360 at 10,20 to 1280x720 at 0,0\n"
            "Why     frame 1 shown by a better camera, at once\n"
            "Waits\n"
            "  shown GROUP: 0.0 s\n"
            "    frame 0 HEAD_OUTSIDE: 1.9 s\n"
            "  pending HEAD: 7.9 s\n"
            "Messages\n"
            "  /ICDOut  2 a second\n"
            "  /PRBDecisions  4 a second\n"
            "  /PRBOut  2 a second\n"
            "  /TimerDebug  2 a second\n");
}

TEST(Watch, LinesNameEachChangeOnce) {
  WatchState state(std::make_shared<VirtualTime>(0, kWallMs));
  state.onMessage("/ctl/tracking-mode", "PeopleFraming");
  state.onMessage("/PRBOut", kScene);
  state.onMessage("/PRBDecisions", R"({"kind":"reset","from":"GROUP"})");
  state.onMessage("/PeopleCount", R"({"face_count":3,"smallestFaceHeight":40})");
  const std::string time = localTimeText(kWallMs);
  EXPECT_EQ(time.substr(13), ":34:56.789");
  EXPECT_EQ(state.takeLines(),
            (std::vector<std::string>{time + " mode PeopleFraming",
                                      time + " picture GROUP by cut, camera 0 640x360 at 10,20",
                                      time + " why layouts forgotten, was GROUP", time + " people 3"}));
  EXPECT_EQ(state.takeLines(), std::vector<std::string>());
}

TEST(Watch, MessagesThatCannotBeReadAreCountedAndChangeNothing) {
  WatchState state(std::make_shared<VirtualTime>(0, kWallMs));
  state.onMessage("/PRBOut", kScene);
  const std::string before = state.screen(0).substr(0, 40);
  const std::vector<std::pair<const char*, const char*>> bad{
      {"/PRBOut", "{"},         {"/PRBOut", "[]"},     {"/PRBOut", R"({"streams":[{}]})"},
      {"/TimerDebug", "7"},     {"/TimerDebug", "{}"}, {"/ICDOut", R"({"heads":[1]})"},
      {"/PeopleCount", "null"}, {"/ICDOut", "\xff"},
  };
  for (const auto& [topic, text] : bad) {
    state.onMessage(topic, text);
  }
  const std::string screen = state.screen(0);
  EXPECT_EQ(screen.substr(0, 40), before);
  EXPECT_NE(screen.find("8 messages could not be read\n"), std::string::npos) << screen;
}

}  // namespace
}  // namespace fyn::productionrules::testing
