#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <opencv2/imgcodecs.hpp>
#include <sstream>

#include "tests/linux/Processes.h"
#include "tests/video/MeasuringVideo.h"
#include "tests/video/Pictures.h"
#include "tools/base/UsageError.h"
#include "tools/video/camera/Inbox.h"
#include "tools/video/camera/Targets.h"
#include "tools/video/source/CameraInputs.h"
#include "tools/video/source/FileCapture.h"
#include "tools/video/source/StageTimes.h"
#include "tools/video/source/VideoInput.h"

namespace fyn::productionrules::video::testing {
namespace {

using productionrules::testing::runTool;
using productionrules::testing::ScratchFolder;

TEST(VideoInput, ReadsEveryPictureOfAFileAndBeginsAgain) {
  const ScratchFolder folder;
  const std::string file = folder.file("room.mkv");
  writeMeasuringVideo(file, 6, 12.5);
  VideoInput input(file);
  EXPECT_FALSE(input.isLive());
  EXPECT_DOUBLE_EQ(input.rate(), 12.5);
  cv::Mat picture;
  for (int round = 0; round < 2; ++round) {
    EXPECT_EQ(input.position(), 0);
    ASSERT_TRUE(input.next(picture));
    EXPECT_EQ(seenIn(picture).frame, 1);
    ASSERT_TRUE(input.skip());
    ASSERT_TRUE(input.next(picture));
    EXPECT_EQ(seenIn(picture).frame, 3);
    EXPECT_TRUE(shows(seenIn(picture), kWhole));
    EXPECT_EQ(input.position(), 3);
    while (input.next(picture)) {
    }
    // The last one stays.
    EXPECT_EQ(seenIn(picture).frame, 6);
    EXPECT_EQ(input.position(), 6);
    input.rewind();
  }
}

TEST(VideoInput, ReadsImageSequencesAndTakesTheMiddleOfWhatIsNotWide) {
  const ScratchFolder folder;
  const Colour grey{90, 90, 90};
  cv::Mat banded(480, 640, CV_8UC3, cv::Scalar::all(0));
  banded.rowRange(60, 420).setTo(cv::Scalar(grey));
  for (int number = 1; number <= 3; ++number) {
    cv::imwrite(folder.file("room-00" + std::to_string(number) + ".png"), banded);
  }
  VideoInput input(folder.file("room-%03d.png"));
  cv::Mat picture;
  int pictures = 0;
  while (input.next(picture)) {
    ++pictures;
    EXPECT_EQ(picture.size(), cv::Size(640, 360));
    EXPECT_EQ(at(picture, 0, 0), grey);
    EXPECT_EQ(at(picture, 639, 359), grey);
  }
  EXPECT_EQ(pictures, 3);
}

TEST(VideoInput, PicturesBecomeSixteenToNine) {
  struct Case {
    cv::Size from;
    cv::Size to;
  };
  for (const Case& one :
       {Case{{1280, 720}, {1280, 720}}, Case{{1920, 1080}, {1920, 1080}}, Case{{1366, 768}, {1366, 768}},
        Case{{768, 576}, {768, 432}}, Case{{720, 1280}, {720, 405}}, Case{{1920, 800}, {1422, 800}},
        Case{{1, 1}, {1, 1}}}) {
    EXPECT_EQ(middleOf(one.from).size(), one.to) << one.from;
  }
}

TEST(VideoInput, SaysWhatCannotBeOpened) {
  const ScratchFolder folder;
  folder.write("text.mp4", "no video");
  for (const std::string& input :
       {folder.file("absent.mp4"), folder.file("text.mp4"), std::string("/dev/video-absent")}) {
    try {
      VideoInput opened(input);
      ADD_FAILURE() << input;
    } catch (const UsageError& fault) {
      EXPECT_EQ(fault.what(), input + ": cannot be opened as a video");
    }
  }
}

TEST(Calibration, NamesInputsAndWhatTheyShow) {
  const ScratchFolder folder;
  const std::string file = folder.write("cameras.json", R"({"cameras":[{"input":"a.mp4","from":0,"to":60},
      {"input":"/b.mp4","from":40.5,"to":100}]})");
  const std::vector<CameraInput> cameras = cameraInputs({}, file);
  ASSERT_EQ(cameras.size(), 2U);
  EXPECT_EQ(cameras[0].input, folder.file("a.mp4"));
  EXPECT_EQ(cameras[1].input, "/b.mp4");
  EXPECT_EQ(cameras[1].from, 40.5);
  EXPECT_EQ(cameras[1].to, 100);
  // Without calibration cameras share nothing.
  const std::vector<CameraInput> plain = cameraInputs({"x", "y"}, "");
  EXPECT_EQ(plain[0].to, plain[1].from);
  EXPECT_THROW(cameraInputs({"x"}, file), UsageError);
  EXPECT_THROW(cameraInputs({}, ""), UsageError);
  EXPECT_THROW(readCalibration(folder.file("absent")), UsageError);
  for (const char* text :
       {"{", "{}", R"({"cameras":[]})", R"({"cameras":[{"input":"a","from":0}]})",
        R"({"cameras":[{"input":"a","from":1,"to":1}]})", R"({"cameras":[{"input":"a","from":2,"to":1}]})"}) {
    EXPECT_THROW(readCalibration(folder.write("bad.json", text)), UsageError) << text;
  }
}

TEST(Targets, FollowTheStreams) {
  struct Case {
    std::vector<std::string> named;
    std::size_t stream;
    const char* target;
  };
  for (const Case& one : {Case{{"out.mp4"}, 0, "out.mp4"}, Case{{"out.mp4"}, 2, "out-2.mp4"},
                          Case{{"a/out.webm"}, 1, "a/out-1.webm"}, Case{{"a.mp4", "b.mp4"}, 1, "b.mp4"},
                          Case{{"a.mp4", "b.mp4"}, 3, "b-3.mp4"}, Case{{"none"}, 4, "none"},
                          Case{{"window"}, 1, "window-1"}, Case{{"pipewire"}, 1, "pipewire-1"},
                          Case{{"/dev/video7"}, 0, "/dev/video7"}, Case{{"/dev/video7"}, 1, ""},
                          Case{{"/dev/video7", "/dev/video8"}, 1, "/dev/video8"}, Case{{}, 0, ""}}) {
    EXPECT_EQ(targetOfStream(one.named, one.stream), one.target);
  }
  for (const char* file : {"out.mp4", "window.mp4", "window-1.mp4"}) {
    EXPECT_TRUE(keepsEveryPicture(file)) << file;
  }
  for (const char* live : {"window", "/dev/video7", "pipewire", "pipewire-1"}) {
    EXPECT_FALSE(keepsEveryPicture(live)) << live;
  }
}

TEST(Targets, AreWrittenAsTheirNameSays) {
  const auto format = [](const std::string& target) {
    const std::vector<std::string> command = writerCommand(target, {{1280, 720}, 30});
    // The last of the two formats is the output's.
    const auto name = std::find(command.rbegin(), command.rend(), "-f");
    return *std::prev(name) + " " + command.back();
  };
  EXPECT_EQ(format("/dev/video7"), "v4l2 /dev/video7");
  EXPECT_EQ(format("out.webm"), "webm ./out.webm");
  EXPECT_EQ(format("-out.mp4"), "mp4 ./-out.mp4");
  for (const char* wrong : {"out", "out.txt", "", "mp4", "pipewire-x", "pipewire-", "pipewire1", "windows"}) {
    EXPECT_THROW(openTarget(wrong, {{1280, 720}, 30}), UsageError) << wrong;
  }
}

TEST(Targets, FilesKeepTheirColours) {
  const ScratchFolder folder;
  const std::vector<Colour> colours{{128, 128, 128}, {144, 176, 224}, {96, 64, 32},
                                    {16, 240, 240},  {160, 192, 48},  {40, 200, 60}};
  for (const auto& [name, most] : {std::pair{"out.mp4", 2}, {"out.webm", 2}, {"out.mkv", 0}}) {
    for (const int width : {640, 1280}) {
      const int field = width / static_cast<int>(colours.size());
      cv::Mat picture(width * 9 / 16, width, CV_8UC3, cv::Scalar::all(0));
      int left = 0;
      for (const Colour& colour : colours) {
        picture.colRange(left, left + field).setTo(cv::Scalar(colour));
        left += field;
      }
      const std::string file = folder.file(name);
      const std::unique_ptr<PictureSink> sink = openTarget(file, {picture.size(), 25});
      sink->write(picture);
      sink->write(picture);
      sink->finish();
      const std::vector<cv::Mat> pictures = picturesOf(file);
      ASSERT_EQ(pictures.size(), 2U) << name;
      int middle = field / 2;
      for (const Colour& colour : colours) {
        EXPECT_LE(difference(at(pictures[1], middle, 180), colour), most)
            << name << " " << width << " " << colour;
        middle += field;
      }
    }
  }
}

TEST(VideoInput, ReadsTheColoursThatAFileIsTaggedWith) {
  const ScratchFolder folder;
  struct Case {
    const char* matrix;
    const char* range;
    const char* size;
  };
  for (const Case& one : {Case{"bt709", "tv", "640x360"}, Case{"smpte170m", "tv", "1280x720"},
                          Case{"bt709", "pc", "1280x720"}}) {
    const std::string file = folder.file("tagged.mp4");
    const std::string scale = std::string("scale=out_color_matrix=") + one.matrix +
                              ":out_range=" + one.range + ":flags=accurate_rnd,format=yuv420p";
    runTool({"ffmpeg", "-y", "-v", "error", "-f", "lavfi", "-i",
             std::string("color=0x30C0A0:d=0.1:s=") + one.size + ",format=bgr24," + scale, "-colorspace",
             one.matrix, "-color_range", one.range, file});
    EXPECT_LE(difference(at(picturesOf(file).at(0), 300, 200), Colour(0xA0, 0xC0, 0x30)), 3)
        << one.matrix << " " << one.range;
  }
}

// The converter of the video library writes whole vectors.
TEST(FileCapture, WritesNothingBehindAPicture) {
  const ScratchFolder folder;
  for (const cv::Size& size :
       {cv::Size(360, 288), cv::Size(854, 480), cv::Size(402, 300), cv::Size(1280, 720)}) {
    const std::string file = folder.file("odd.mp4");
    runTool({"ffmpeg", "-y", "-v", "error", "-f", "lavfi", "-i",
             "color=white:d=0.1:s=" + std::to_string(size.width) + "x" + std::to_string(size.height), file});
    std::vector<std::uint8_t> memory(3 * static_cast<std::size_t>(size.area()) + 64, 7);
    cv::Mat picture(size, CV_8UC3, memory.data());
    ASSERT_TRUE(FileCapture(file).next(picture));
    EXPECT_EQ(picture.size(), size);
    EXPECT_GT(picture.at<cv::Vec3b>(size.height - 1, size.width - 1)[0], 240) << size;
    EXPECT_EQ(std::count(memory.end() - 64, memory.end(), 7), 64) << size;
  }
}

TEST(Targets, HaveSizesThatPicturesCanHave) {
  EXPECT_EQ(outputSizeOf("1920x1080"), cv::Size(1920, 1080));
  for (const char* wrong :
       {"", "1920", "1920x1081", "1920*1080", "1920x1080x", "16x9", "-1280x-720", "640x480"}) {
    EXPECT_THROW(outputSizeOf(wrong), UsageError) << wrong;
  }
}

TEST(Inbox, KeepsTheLatestThousandForAReaderThatDoesNotCome) {
  Inbox inbox;
  for (int number = 1; number <= 1500; ++number) {
    inbox.put({Arrival::Kind::visionResult, std::to_string(number)});
  }
  EXPECT_EQ(inbox.take(std::chrono::milliseconds(0))->text, "501");
}

TEST(StageTimes, CountAllAndKeepTheLatest) {
  StageTimes times;
  for (int number = 0; number < 15000; ++number) {
    times.add("read", number < 7500 ? 1000 : 2);
  }
  std::ostringstream text;
  times.print(text);
  EXPECT_NE(text.str().find("15000       2.00"), std::string::npos) << text.str();
}

TEST(StageTimes, QuantilesAreByNearestRank) {
  EXPECT_EQ(quantile({}, 0.5), 0);
  EXPECT_EQ(quantile({4}, 0.99), 4);
  EXPECT_EQ(quantile({4, 1, 3, 2}, 0.5), 2);
  EXPECT_EQ(quantile({4, 1, 3, 2}, 0.51), 3);
  EXPECT_EQ(quantile({4, 1, 3, 2}, 0), 1);
  EXPECT_EQ(quantile({4, 1, 3, 2}, 1), 4);
}

}  // namespace
}  // namespace fyn::productionrules::video::testing
