// Who is found in photographs of people who sit and stand together, and in clips of one who talks. They are
// fetched, not part of the project.
#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

#include "tests/testing/Folders.h"
#include "tools/video/source/VideoInput.h"
#include "tools/video/vision/FaceNetDetector.h"
#include "tools/video/vision/PersonTracker.h"
#include "tools/video/vision/Pipeline.h"

namespace fyn::productionrules::video::testing {
namespace {

const std::filesystem::path kFetched = std::filesystem::path(sourceFolder()) / "build/fetched";

/** The middles of the faces, in the frame of reference. */
using Faces = std::vector<cv::Point2d>;

const std::vector<Faces> kPhotographs{
    {{344, 255}, {1044, 180}, {627, 299}},
    {{1036, 141}, {652, 180}, {303, 141}},
    {{790, 186}, {460, 246}, {1051, 232}},
    {{718, 148}, {504, 95}, {217, 160}, {913, 132}},
    {{1014, 267}, {572, 115}, {446, 276}, {801, 168}, {306, 524}},
    {{234, 291}, {841, 206}, {1058, 192}, {516, 220}},
};

cv::Mat photograph(std::size_t index) {
  return cv::imread((kFetched / ("sample" + std::to_string(index + 1) + ".jpg")).string());
}

class RoomPhotographs : public ::testing::Test {
 protected:
  void SetUp() override {
    if (!std::filesystem::exists(kFetched / "faces.onnx") || photograph(0).empty()) {
      GTEST_SKIP() << "tools/setup/fetch.sh model photographs has not been run";
    }
    mDetector = std::make_unique<FaceNetDetector>((kFetched / "faces.onnx").string());
  }

  /** How many of `faces` begin a person; whatever else would is a fault, and so is a head that is not whole.
   */
  std::size_t found(const cv::Mat& picture, Faces faces) {
    const std::size_t all = faces.size();
    for (const Detection& head : mDetector->detect(picture, 0, 1)) {
      if (head.score < TrackerOptions().scoreToBegin) {
        continue;
      }
      const auto face = std::find_if(faces.begin(), faces.end(), [&](const cv::Point2d& middle) {
        const cv::Point2d off = (head.box.tl() + head.box.br()) / 2.0 - middle;
        return std::abs(off.x) < head.box.width / 4 && std::abs(off.y) < head.box.height / 4;
      });
      if (face == faces.end()) {
        ADD_FAILURE() << "nobody is at " << head.box;
      } else {
        faces.erase(face);
      }
    }
    return all - faces.size();
  }

  std::unique_ptr<FaceNetDetector> mDetector;
};

TEST_F(RoomPhotographs, AllButTwoOfTwentyTwoAreFoundAndNobodyElse) {
  std::size_t near = 0;
  // All photographs side by side, as people are seen who sit far away.
  cv::Mat wall(1080, 1920, CV_8UC3, cv::Scalar::all(0));
  Faces onWall;
  for (std::size_t index = 0; index < kPhotographs.size(); ++index) {
    const cv::Mat picture = photograph(index);
    near += found(picture, kPhotographs[index]);
    const cv::Size size(640, 640 * picture.rows / picture.cols);
    const cv::Rect place(cv::Point(640 * static_cast<int>(index % 3), index < 3 ? 0 : 540), size);
    const cv::Rect seen = place & cv::Rect({0, 0}, wall.size());
    cv::Mat small;
    cv::resize(picture, small, size, 0, 0, cv::INTER_AREA);
    small(cv::Rect({0, 0}, seen.size())).copyTo(wall(seen));
    for (const cv::Point2d& face : kPhotographs[index]) {
      onWall.emplace_back((place.x + face.x * place.width / 1280) * 1280 / wall.cols,
                          (place.y + face.y * place.height / 720) * 720 / wall.rows);
    }
  }
  EXPECT_GE(near, 20U);
  if (const cv::Mat portrait = cv::imread((kFetched / "astronaut.png").string()); !portrait.empty()) {
    EXPECT_EQ(found(portrait, {{560, 160}}), 1U);
  }
  // Heads a thirtieth of the picture wide are found at once or as they move.
  EXPECT_GE(found(wall, onWall), 14U);
}

TEST_F(RoomPhotographs, WhoIsAloneInAClipIsFoundAndNobodyElse) {
  for (const char* const name : {"talking.mp4", "franck.mp4"}) {
    VideoInput clip((kFetched / name).string());
    Pipeline pipeline({{"", 0, 1}}, std::move(mDetector), 1, false, WithoutSound::nobody);
    mDetector = std::make_unique<FaceNetDetector>((kFetched / "faces.onnx").string());
    int alone = 0;
    cv::Mat picture;
    for (int number = 1; number <= 40 && clip.next(picture); ++number) {
      const std::size_t persons = pipeline.look({number, 400 * number, {picture}}).persons.size();
      alone += persons == 1 ? 1 : 0;
      EXPECT_LE(persons, 1U) << name << ", picture " << clip.position();
      for (int passedOver = 0; passedOver < 30 && clip.skip(); ++passedOver) {
      }
    }
    // A person counts from the second time on.
    EXPECT_GE(alone, 38) << name;
  }
}

TEST_F(RoomPhotographs, TellsFrontFromSide) {
  struct Case {
    std::size_t picture;
    cv::Point2d face;
    int least;
    int most;
  };
  for (const Case& one :
       {Case{1, {303, 141}, 60, 90}, Case{3, {718, 148}, 25, 60}, Case{5, {841, 206}, 0, 25}}) {
    for (const Detection& head : mDetector->detect(photograph(one.picture), 0, 1)) {
      if (head.box.contains(one.face)) {
        EXPECT_GE(head.yaw, one.least);
        EXPECT_LE(head.yaw, one.most);
      }
    }
  }
}

}  // namespace
}  // namespace fyn::productionrules::video::testing
