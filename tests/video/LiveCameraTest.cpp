// The camera's picture goes on whatever becomes of a device or of who looks at its frames.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "tests/linux/Processes.h"
#include "tests/linux/Servers.h"
#include "tests/testing/Folders.h"
#include "tests/testing/NotingListener.h"
#include "tests/video/MeasuringVideo.h"
#include "tests/video/Pictures.h"
#include "tools/base/UsageError.h"
#include "tools/live/LiveBus.h"
#include "tools/video/source/DeviceCapture.h"
#include "tools/video/source/FeedInput.h"
#include "tools/video/source/FeedMessage.h"

namespace fyn::productionrules::video::testing {
namespace {

using namespace fyn::productionrules::testing;

constexpr std::chrono::milliseconds kSoon{20};

cv::Mat flat(int value) {
  return cv::Mat(72, 128, CV_8UC3, cv::Scalar::all(value));
}

bool isFlat(const cv::Mat& picture, int value) {
  return picture.rows == 72 && at(picture, 0, 0) == Colour::all(static_cast<std::uint8_t>(value));
}

TEST(DeviceCapture, OpensAgainWhatWasUnplugged) {
  std::atomic<int> opened{0};
  std::atomic<bool> isPlugged{true};
  // What was opened up to then gives no more pictures.
  std::atomic<int> ended{0};
  const auto open = [&]() -> DeviceCapture::Reader {
    if (!isPlugged) {
      throw UsageError("no device");
    }
    return [&, value = ++opened](cv::Mat& picture) {
      picture = flat(value);
      return value > ended;
    };
  };
  DeviceCapture capture(
      open, {std::chrono::milliseconds(5), std::chrono::milliseconds(50), std::chrono::milliseconds(1)});
  const auto shows = [&](int value) { return eventually([&] { return isFlat(capture.next(), value); }); };
  EXPECT_TRUE(shows(1));
  isPlugged = false;
  ended = 1;
  const cv::Size whole = noSignal().size();
  EXPECT_TRUE(eventually([&] { return capture.next().size() == whole; }));
  isPlugged = true;
  EXPECT_TRUE(shows(2));
  isPlugged = false;
  EXPECT_THROW(DeviceCapture(open, {}), UsageError);
}

TEST(FrameFeed, HandsOnTheNewestFrameToWhoeverReads) {
  const ScratchFolder folder;
  const std::string socket = folder.file("room.sock");
  FrameFeed feed(socket, {{"", 0, 60}, {"", 40, 100}});
  struct stat about {};
  ASSERT_EQ(stat(socket.c_str(), &about), 0);
  EXPECT_EQ(about.st_mode & 0777U, 0600U);
  std::int64_t number = 0;
  const auto nextOf = [&](FeedInput& reader, bool speech) {
    std::optional<FedFrame> frame;
    EXPECT_TRUE(eventually([&] {
      ++number;
      const cv::Mat large(1440, 2560, CV_8UC3, cv::Scalar::all(9));
      feed.offer({number, 1000 + number, {flat(static_cast<int>(number % 200)), large}, speech});
      frame = reader.next(kSoon);
      return frame.has_value();
    }));
    return frame.value_or(FedFrame());
  };
  for (int round = 0; round < 2; ++round) {
    // The one before has gone, in the middle of a frame for all we know.
    FeedInput reader(socket);
    const FedFrame frame = nextOf(reader, round == 0);
    EXPECT_EQ(frame.speech, round == 0);
    EXPECT_EQ(frame.ms, 1000 + frame.number);
    ASSERT_EQ(frame.pictures.size(), 2U);
    EXPECT_TRUE(isFlat(frame.pictures[0], static_cast<int>(frame.number % 200)));
    EXPECT_EQ(frame.pictures[1].size(), cv::Size(1280, 720));
    EXPECT_EQ(at(frame.pictures[1], 1279, 719), Colour(9, 9, 9));
    EXPECT_EQ(reader.cameras().at(1).from, 40);
  }
}

TEST(FrameFeed, EndsWhileAReaderHangs) {
  const ScratchFolder folder;
  const std::string socketFile = folder.file("room.sock");
  const int hanging = ::socket(AF_UNIX, SOCK_STREAM, 0);
  {
    FrameFeed feed(socketFile, {{"", 0, 1}});
    const sockaddr_un address = feedAddress(socketFile);
    ASSERT_EQ(connect(hanging, reinterpret_cast<const sockaddr*>(&address), sizeof(address)), 0);
    for (int number = 1; number <= 50; ++number) {
      feed.offer({number, number, {cv::Mat(720, 1280, CV_8UC3, cv::Scalar::all(0))}});
    }
  }
  close(hanging);
  EXPECT_FALSE(std::filesystem::exists(socketFile));
}

TEST(FeedInput, LeavesWhoeverSaysSomethingElse) {
  const ScratchFolder folder;
  const std::string file = folder.file("room.sock");
  const sockaddr_un address = feedAddress(file);
  const int listening = ::socket(AF_UNIX, SOCK_STREAM, 0);
  ASSERT_EQ(bind(listening, reinterpret_cast<const sockaddr*>(&address), sizeof(address)), 0);
  ASSERT_EQ(listen(listening, 1), 0);
  FeedInput reader(file);
  EXPECT_FALSE(reader.next(kSoon));
  const int speaking = accept(listening, nullptr, nullptr);
  const std::string nonsense(64, 'x');
  ASSERT_EQ(write(speaking, nonsense.data(), nonsense.size()), static_cast<ssize_t>(nonsense.size()));
  EXPECT_FALSE(reader.next(kSoon));
  char nothing = 0;
  EXPECT_LE(recv(speaking, &nothing, 1, 0), 0) << "it is still connected";
  close(speaking);
  close(listening);
  EXPECT_THROW(feedAddress(std::string(200, 'x')), UsageError);
}

TEST(CameraProgram, GoesOnWhenVisionIsKilledAndTakesTheNextOne) {
  const ScratchFolder folder;
  const Broker broker;
  const MessageBus bus;
  const std::string video = folder.file("room.mkv");
  writeMeasuringVideo(video, 120, 2);
  const std::string feed = folder.file("room.sock");
  const std::string programs = programFolder() + "/";
  Process camera({programs + "prb-camera", video, "--bus", broker.url(), "--dbus", bus.address(), "--feed",
                  feed, "--journal", "-"});
  const auto goesOn = [&] {
    return eventually(
        [&, before = camera.outputLines().size()] { return camera.outputLines().size() > before + 1; });
  };
  EXPECT_TRUE(goesOn()) << "before anybody looks: " << camera.errorText();
  NotingListener listener;
  PlatformOptions options;
  options.bus = broker.url();
  LiveBus live(options);
  live.client().subscribe("/ICDOut", listener);
  live.waitUntilReady();
  const std::string script = folder.write("script.jsonl", R"({"frame":1,"heads":[]})");
  for (int round = 0; round < 2; ++round) {
    const std::size_t before = listener.received().size();
    Process vision({programs + "prb-vision", "--feed", feed, "--bus", broker.url(), "--script", script});
    EXPECT_TRUE(eventually([&] { return listener.received().size() > before + 2; })) << vision.errorText();
    if (round == 0) {
      vision.kill();
      EXPECT_TRUE(goesOn()) << "vision was killed";
    } else {
      vision.signal(SIGSTOP);
      EXPECT_TRUE(goesOn()) << "vision hangs";
      vision.signal(SIGCONT);
      vision.signal(SIGTERM);
      EXPECT_EQ(vision.wait(), 0);
    }
  }
  camera.signal(SIGTERM);
  EXPECT_EQ(camera.wait(), 0) << camera.errorText();
}

TEST(CameraProgram, ShowsTheOtherCameraWhenOneInputEnds) {
  const ScratchFolder folder;
  const MessageBus bus;
  const std::string brief = folder.file("brief.mkv");
  const std::string film = folder.file("out.mkv");
  writeMeasuringVideo(brief, 2, 10);
  const std::string lasting = folder.file("lasting.mkv");
  writeMeasuringVideo(lasting, 6, 10);
  Process camera(
      {programFolder() + "/prb-camera", brief, lasting, "--fast", "--dbus", bus.address(), "-o", film});
  ASSERT_EQ(camera.wait(), 0) << camera.errorText();
  const std::vector<cv::Mat> pictures = picturesOf(film);
  ASSERT_EQ(pictures.size(), 6U);
  EXPECT_EQ(seenIn(pictures[1]).frame, 2);
  EXPECT_EQ(at(pictures[2], 10, 10), at(noSignal(), 10, 10));
}

/** Whether a process holds SIGTERM back, to end in order. */
bool mindsItsEnd(pid_t process) {
  std::ifstream status("/proc/" + std::to_string(process) + "/status");
  for (std::string word; status >> word;) {
    std::uint64_t blocked = 0;
    if (word == "SigBlk:" && status >> std::hex >> blocked) {
      return (blocked >> (SIGTERM - 1) & 1U) != 0;
    }
  }
  return false;
}

TEST(VideoPrograms, EndWhateverTheyAreDoingWhenTheyAreTold) {
  const ScratchFolder folder;
  const MessageBus bus;
  const std::string video = folder.file("room.mkv");
  writeMeasuringVideo(video, 120, 10);
  const std::string nobody = "mqtt://127.0.0.1:" + std::to_string(freePort());
  const std::string recording = folder.file("room.jsonl");
  for (const std::vector<std::string>& arguments : std::vector<std::vector<std::string>>{
           {"prb-camera", video, video, video, video, video, video, video, video, "--scenes",
            folder.write("none.jsonl", ""), "-o", folder.file("out.webm"), "--journal", "-"},
           {"prb-camera", video, "--bus", nobody, "--dbus", bus.address()},
           {"prb-camera", video, "--dbus", bus.address(), "--feed", folder.file("feed"), "--delay", "2000"},
           {"prb-vision", video, "--detector", "bodies", "-o", recording},
           {"prb-vision", video, "--bus", nobody},
           {"prb-vision", "--feed", folder.file("absent"), "--bus", nobody}}) {
    std::vector<std::string> command = arguments;
    command.front() = programFolder() + "/" + arguments.front();
    Process process(command);
    ASSERT_TRUE(eventually([&] { return mindsItsEnd(process.id()); })) << process.errorText();
    process.signal(SIGTERM);
    EXPECT_EQ(process.wait(), 0) << arguments.front() << " " << arguments.back() << process.errorText();
    EXPECT_LT(process.outputLines().size(), 120U);
  }
  std::ifstream seen(recording);
  EXPECT_LT(std::count(std::istreambuf_iterator<char>(seen), {}, '\n'), 120);
}

}  // namespace
}  // namespace fyn::productionrules::video::testing
