// A machine that is too slow drops pictures; it lets none pile up.
#include <gtest/gtest.h>

#include <algorithm>
#include <future>

#include "platform/virtual/VirtualTime.h"
#include "tests/testing/ScratchFolder.h"
#include "tests/video/MeasuringVideo.h"
#include "tools/video/camera/DelayedShow.h"
#include "tools/video/vision/Pipeline.h"

namespace fyn::productionrules::video::testing {
namespace {

using productionrules::testing::ScratchFolder;

/** Notes when the frames were taken that it shows. */
class NotedShow final : public DelayedShow {
 public:
  using DelayedShow::DelayedShow;
  std::vector<std::int64_t> shown;

 private:
  void handleResult(VisionFrame result) override { add({std::move(result), {}}); }
  void show(const Waiting& waiting, std::optional<std::int64_t> /*nextMs*/) override {
    shown.push_back(waiting.frame.time.timestampMs);
  }
};

TEST(DelayedShow, LeavesOutOldPicturesWhereSomebodyLooksAndLetsNonePileUp) {
  const ScratchFolder folder;
  const std::string video = folder.file("room.mkv");
  writeMeasuringVideo(video, 1, 25);
  struct Case {
    const char* name;
    /** A file is to have every picture. */
    bool isFile;
    std::int64_t intervalMs;
    /** Frames that are taken while one picture is shown. */
    int meanwhile;
    int shown;
    /** Of what is shown of four hundred frames. */
    std::int64_t oldestMs;
  };
  for (const Case& one :
       {Case{"quiet", false, 40, 1, 397, 120}, Case{"slow", false, 40, 4, 100, 120},
        Case{"hardly going", false, 40, 50, 8, 120}, Case{"vision that lags", false, 200, 1, 399, 200},
        Case{"a file", true, 40, 1, 397, 120}, Case{"a slow file", true, 40, 4, 301, 4000},
        Case{"a clock that stands still", false, 0, 1, 300, 0}}) {
    const VirtualTime time(0, 0);
    PlayerOptions options;
    options.outputs = {one.isFile ? std::vector<std::string>{"none"} : std::vector<std::string>{}};
    options.complain = [](const std::string&) {};
    Player player({{video, 0, 1}}, options, time);
    NotedShow show(player, 100);
    std::int64_t now = 1000;
    std::int64_t oldest = 0;
    for (int frame = 1; frame <= 400; ++frame) {
      const std::size_t before = show.shown.size();
      now += one.intervalMs;
      show.handle({Arrival::Kind::visionResult,
                   R"({"frameNumber":1,"heads":[],"timestamp":)" + std::to_string(now) + "}"});
      if (frame % one.meanwhile == 0 && show.isDue()) {
        show.showDue();
      }
      for (std::size_t index = before; index < show.shown.size(); ++index) {
        oldest = std::max(oldest, now - show.shown[index]);
      }
    }
    EXPECT_EQ(show.shown.size(), static_cast<std::size_t>(one.shown)) << one.name;
    EXPECT_EQ(oldest, one.oldestMs) << one.name;
    EXPECT_TRUE(std::is_sorted(show.shown.begin(), show.shown.end())) << one.name;
  }
}

TEST(VisionFrame, HasNoTimeThatCannotBeReckonedWith) {
  for (const char* const wrong : {"9223372036854775807", "-9223372036854775808"}) {
    EXPECT_THROW(parseVisionFrame(std::string(R"({"frameNumber":1,"heads":[],"timestamp":)") + wrong + "}"),
                 std::invalid_argument);
  }
  EXPECT_EQ(parseVisionFrame(R"({"frameNumber":1,"heads":[],"timestamp":1700000000000})").time.timestampMs,
            1700000000000);
}

/** Takes as long for a frame as it is told to. */
class SlowDetector final : public PersonDetector {
 public:
  struct Course {
    std::promise<void> begun;
    std::promise<void> mayGoOn;
    std::vector<std::int64_t> seen;
  };

  explicit SlowDetector(Course& course) : mCourse(course) {}

  std::vector<Detection> detect(const cv::Mat& /*picture*/, std::size_t /*camera*/,
                                std::int64_t frame) override {
    mCourse.seen.push_back(frame);
    mCourse.begun.set_value();
    mCourse.mayGoOn.get_future().wait();
    return {};
  }

 private:
  Course& mCourse;
};

TEST(Pipeline, PassesOverFramesWhileTheDetectorIsBusy) {
  SlowDetector::Course course;
  {
    const cv::Mat picture(9, 16, CV_8UC3);
    Pipeline pipeline({{"", 0, 1}}, std::make_unique<SlowDetector>(course), 1, true, WithoutSound::nobody);
    for (std::int64_t number = 1; number <= 50; ++number) {
      EXPECT_EQ(pipeline.look({number, number, {picture}}).frameNumber, number);
    }
    course.begun.get_future().wait();
    course.mayGoOn.set_value();
  }
  EXPECT_EQ(course.seen, std::vector<std::int64_t>{1});
}

}  // namespace
}  // namespace fyn::productionrules::video::testing
