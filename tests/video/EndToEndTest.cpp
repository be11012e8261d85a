#include <gtest/gtest.h>
#include <signal.h>

#include <atomic>
#include <fstream>
#include <memory>
#include <nlohmann/json.hpp>

#include "platform/Clock.h"
#include "platform/linux/mqtt/MqttPubSubClient.h"
#include "tests/linux/NotingListener.h"
#include "tests/linux/Servers.h"
#include "tests/video/MeasuringVideo.h"
#include "tests/video/Pictures.h"
#include "tools/meeting/VisionResult.h"
#include "tools/video/compose/SceneDocument.h"

namespace fyn::productionrules::video::testing {
namespace {

using namespace fyn::productionrules::testing;
using nlohmann::json;

constexpr double kRate = 10;
constexpr int kFrames = 100;
constexpr int kWait = 150;
// Long: whatever else the machine does, no scene comes after its frame is composed.
constexpr int kDelayMs = 2000;
constexpr int kDelayFrames = kDelayMs * static_cast<int>(kRate) / 1000;
constexpr std::int64_t kFrameMs = 100;

std::string program(const std::string& name) {
  return std::string(PR_PROGRAM_DIR) + "/" + name;
}

/** A configuration with which the service changes the picture after 150 ms. */
std::string hastyConfiguration() {
  std::string text;
  for (const char* key :
       {"groupframe.headleft", "groupframe.movecloser", "groupframe.onedge", "groupframe.outside",
        "layoutchange.rmtoother", "headboundbox.offcenter", "headboundbox.outofframe", "headbuffer.onedge",
        "layoutchange.gftoother", "layoutchange.headtoother", "layoutchange.headcountchange",
        "layoutchange.headposchange", "layoutchange.roomtohead"}) {
    text += std::string("persist.fdtimers.") + key + "=" + std::to_string(kWait) + "\n";
  }
  return text;
}

/** A line of a detector's script, or a vision result, with two people whose heads are 80 x 100. */
json twoHeads(int x) {
  json heads = json::array();
  for (const int left : {x, x + 160}) {
    heads.push_back({{"left", left}, {"top", 240}, {"right", left + 80}, {"bottom", 340}});
  }
  return heads;
}

constexpr int kLeft = 120;
constexpr int kRight = 900;

/** A room in which nothing runs yet but the two buses and the service. */
class VideoRoom {
 public:
  VideoRoom() {
    writeMeasuringVideo(video, kFrames, kRate);
    MqttOptions options;
    options.address = parseBusAddress(mBroker.url());
    client = std::make_unique<MqttPubSubClient>(options);
    client->subscribe("/ICDOut", mHeard);
    client->subscribe("/PRBOut", mHeard);
    auto settled = std::make_shared<std::atomic<bool>>(false);
    client->whenSubscribed([settled] { *settled = true; });
    EXPECT_TRUE(eventually([&] { return settled->load(); }));
    mService = std::make_unique<Process>(
        std::vector<std::string>{program("productionrulesd"), "--bus", mBroker.url(), "--provider",
                                 "dbus:" + mBus.address(), "--properties", folder.file("p.db")},
        std::map<std::string, std::string>{{"NOTIFY_SOCKET", mNotify.path()},
                                           {"FYN_CONF_NAME", folder.write("fyn.conf", hastyConfiguration())},
                                           {"PRB_LOG", "stderr"}});
    EXPECT_NE(mNotify.next().find("STATUS=running"), std::string::npos) << mService->errorText();
    for (const BusMessage& message : cameraMessages({{kDefaultImageSize}})) {
      client->publish(message.topic, message.payload);
    }
  }

  /** Returns when it can take scenes. */
  std::unique_ptr<Process> startCamera(const std::string& output) {
    auto camera = std::make_unique<Process>(std::vector<std::string>{
        program("prb-camera"), video, "--bus", mBroker.url(), "--dbus", mBus.address(), "--delay",
        std::to_string(kDelayMs), "-o", output, "--journal", output + ".jsonl", "--properties", "memory"});
    EXPECT_TRUE(eventually([&] { return !camera->outputLines().empty(); })) << camera->errorText();
    return camera;
  }

  std::unique_ptr<Process> startVision(const std::string& script) {
    return std::make_unique<Process>(std::vector<std::string>{
        program("prb-vision"), video, "--bus", mBroker.url(), "--script", script, "--properties", "memory"});
  }

  /** The number of the frame whose picture was written last. */
  static int lastWritten(const std::string& output) {
    std::ifstream journal(output + ".jsonl");
    int last = 0;
    for (std::string line; std::getline(journal, line) && !journal.eof();) {
      last = json::parse(line).at("frame").get<int>();
    }
    return last;
  }

  /** What was heard so far on a topic. */
  std::vector<json> heard(const std::string& topic) const {
    std::vector<json> documents;
    for (const std::string& line : mHeard.received()) {
      if (line.rfind(topic + " ", 0) == 0) {
        documents.push_back(json::parse(line.substr(topic.size() + 1)));
      }
    }
    return documents;
  }

  std::vector<StreamScene> scenes() const {
    std::vector<StreamScene> all;
    for (const json& document : heard("/PRBOut")) {
      all.push_back(parseSceneDocument(document.dump()).at(0));
    }
    return all;
  }

  /** Publishes the next vision result itself. */
  void see(int x) {
    json heads = json::array();
    int id = 0;
    for (const json& box : twoHeads(x)) {
      heads.push_back({{"fynId", ++id}, {"associatedHeads", {{{"id", id}, {"camId", 0}, {"bbox", box}}}}});
    }
    mSeenMs = getWallTs64();
    const json result{{"timestamp", mSeenMs}, {"frameNumber", ++frame}, {"heads", heads}};
    client->publish("/ICDOut", result.dump());
  }

  /** Sees two people at `x` until a scene shows the room's left half, or the right one. */
  bool seeUntilShown(int x) {
    return eventually([&] {
      if (getWallTs64() - mSeenMs >= kFrameMs) {
        see(x);
      }
      const std::vector<StreamScene> all = scenes();
      return !all.empty() && isAround(all.back(), x);
    });
  }

  static bool isAround(const StreamScene& scene, int x) {
    if (scene.tiles.size() != 1) {
      return false;
    }
    const cv::Rect& source = scene.tiles[0].source;
    return source.width < kWidth && source.contains({x, 290}) && source.contains({x + 240, 290});
  }

  const ScratchFolder folder;
  const std::string video = folder.file("room.mkv");
  std::unique_ptr<MqttPubSubClient> client;
  int frame = 0;

 private:
  Broker mBroker;
  MessageBus mBus;
  NotifySocket mNotify;
  NotingListener mHeard;
  std::unique_ptr<Process> mService;
  std::int64_t mSeenMs = 0;
};

TEST(EndToEnd, ThePictureShowsWhatTheScenesNameFromTheFrameThatTheyWereDecidedOn) {
  VideoRoom room;
  const std::string film = room.folder.file("out.mkv");
  const std::string script =
      room.folder.write("script.jsonl", json{{"frame", 1}, {"heads", twoHeads(kLeft)}}.dump() + "\n" +
                                            json{{"frame", 50}, {"heads", twoHeads(kRight)}}.dump() + "\n");
  const std::unique_ptr<Process> camera = room.startCamera(film);
  const std::unique_ptr<Process> vision = room.startVision(script);
  ASSERT_EQ(vision->wait(), 0) << vision->errorText();
  // Then the camera has heard of all frames; the last ones it shows when it is told to end.
  ASSERT_TRUE(eventually([&] { return VideoRoom::lastWritten(film) >= kFrames - kDelayFrames; }));
  ASSERT_EQ(room.heard("/ICDOut").size(), static_cast<std::size_t>(kFrames));
  camera->signal(SIGTERM);
  ASSERT_EQ(camera->wait(), 0) << camera->errorText();
  EXPECT_EQ(camera->errorText().find("W prb-camera"), std::string::npos) << camera->errorText();

  const std::vector<json> results = room.heard("/ICDOut");
  const std::vector<StreamScene> scenes = room.scenes();
  const std::vector<cv::Mat> pictures = picturesOf(film);
  ASSERT_EQ(pictures.size(), static_cast<std::size_t>(kFrames));
  std::size_t on = 0;
  int cuts = 0;
  for (std::size_t index = 0; index < pictures.size(); ++index) {
    const bool isLast = index + 1 == results.size();
    const std::size_t before = on;
    while (on < scenes.size() &&
           (isLast || scenes[on].timestampMs < results[index + 1].at("timestamp").get<std::int64_t>())) {
      ++on;
    }
    const cv::Rect wanted = on == 0 ? kWhole : scenes[on - 1].tiles.at(0).source;
    const cv::Rect former = before == 0 ? kWhole : scenes[before - 1].tiles.at(0).source;
    cuts += wanted != former ? 1 : 0;
    const Seen seen = seenIn(pictures[index]);
    EXPECT_EQ(seen.frame, static_cast<int>(index) + 1);
    EXPECT_TRUE(shows(seen, wanted)) << "frame " << index + 1 << " shows " << seen.region << ", not "
                                     << wanted;
  }
  // From the whole room to the people, and after them.
  EXPECT_GE(cuts, 2);
  ASSERT_FALSE(scenes.empty());
  EXPECT_TRUE(VideoRoom::isAround(scenes.back(), kRight));
}

TEST(EndToEnd, AProviderThatWasKilledAndStartedAgainShowsThePictureByItself) {
  VideoRoom room;
  const std::string first = room.folder.file("first.mkv");
  const std::string second = room.folder.file("second.mkv");
  std::unique_ptr<Process> camera = room.startCamera(first);
  ASSERT_TRUE(room.seeUntilShown(kLeft));
  const cv::Rect left = room.scenes().back().tiles.at(0).source;
  camera->kill();

  camera = room.startCamera(second);
  const std::size_t scenesBefore = room.scenes().size();
  const int firstFrame = room.frame + 1;
  for (int count = 0; count < 5; ++count) {
    room.see(kLeft);
  }
  const int lastSteady = room.frame;
  // The new provider is given what is decided from now on.
  ASSERT_TRUE(room.seeUntilShown(kRight));
  const cv::Rect right = room.scenes().back().tiles.at(0).source;
  EXPECT_GT(room.scenes().size(), scenesBefore);
  camera->signal(SIGTERM);
  ASSERT_EQ(camera->wait(), 0) << camera->errorText();

  const std::vector<cv::Mat> pictures = picturesOf(second);
  ASSERT_EQ(pictures.size(), static_cast<std::size_t>(room.frame - firstFrame + 1));
  for (std::size_t index = 0; index < pictures.size(); ++index) {
    const Seen seen = seenIn(pictures[index]);
    const int number = firstFrame + static_cast<int>(index);
    EXPECT_EQ(seen.frame, number);
    if (number < lastSteady) {
      EXPECT_TRUE(shows(seen, left)) << number << ": " << seen.region;
    }
  }
  EXPECT_TRUE(shows(seenIn(pictures.back()), right)) << seenIn(pictures.back()).region;
}

}  // namespace
}  // namespace fyn::productionrules::video::testing
