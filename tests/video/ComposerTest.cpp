#include <gtest/gtest.h>

#include "tests/video/Pictures.h"
#include "tools/video/compose/Composer.h"

namespace fyn::productionrules::video::testing {
namespace {

const cv::Size kOutput{kWidth, kHeight};
const Colour kBlack{0, 0, 0};
constexpr double kAnyEnlargement = 1000;

/** A picture that begins with one field of the chart, cut at 0, and goes on with another. */
class Changing {
 public:
  explicit Changing(std::size_t cameras = 1) : composer(kOutput, cameras, kAnyEnlargement) {
    for (std::size_t camera = 0; camera < cameras; ++camera) {
      pictures.push_back(chart(kOutput, static_cast<int>(camera)));
    }
  }

  Colour middleAt(std::int64_t t) { return at(composer.compose(pictures, t), kWidth / 2, kHeight / 2); }

  Composer composer;
  std::vector<cv::Mat> pictures;
};

// Whatever the size of the camera's picture, and whatever size its rectangles refer to.
TEST(Composer, ATileShowsThePartThatItNames) {
  struct Case {
    const char* name;
    cv::Size picture;
    cv::Size reference;
  };
  for (const Case& one :
       {Case{"as is", {1280, 720}, {1280, 720}}, Case{"larger", {1920, 1080}, {1280, 720}},
        Case{"much larger", {3840, 2160}, {1280, 720}}, Case{"smaller", {640, 360}, {1280, 720}},
        Case{"full size", {1920, 1080}, {1920, 1080}}, Case{"not wide", {768, 576}, {768, 576}}}) {
    SCOPED_TRACE(one.name);
    Composer composer(kOutput, 1, kAnyEnlargement);
    const std::vector<cv::Mat> pictures{chart(one.picture)};
    for (const auto& [column, row] : {std::pair{0, 0}, {7, 3}, {3, 1}, {7, 0}}) {
      const int width = one.reference.width / kColumns;
      const int height = one.reference.height / kRows;
      composer.show(sceneOf({{{column * width, row * height, width, height}, kWhole, 0, one.reference}}), 0);
      const cv::Mat& output = composer.compose(pictures, 0);
      const Colour expected = chartColour(column, row);
      for (const auto& [x, y] : {std::pair{640, 360}, {0, 0}, {1279, 0}, {0, 719}, {1279, 719}}) {
        EXPECT_LE(difference(at(output, x, y), expected), 1)
            << column << ", " << row << " at " << x << ", " << y;
      }
    }
  }
}

TEST(Composer, TilesLieEdgeToEdgeAndTheRestIsBlack) {
  Changing changing(2);
  // Widths that no pixel grid divides evenly.
  changing.composer.show(sceneOf({{field(0, 0), {0, 0, 427, 720}},
                                  {field(7, 3), {427, 0, 426, 360}},
                                  {field(2, 1), {427, 360, 426, 180}, 1}}),
                         0);
  const cv::Mat& output = changing.composer.compose(changing.pictures, 0);
  struct Case {
    int x, y;
    Colour colour;
  };
  for (const Case& one : {Case{0, 0, chartColour(0, 0)}, Case{426, 719, chartColour(0, 0)},
                          Case{427, 0, chartColour(7, 3)}, Case{852, 359, chartColour(7, 3)},
                          Case{427, 360, chartColour(2, 1, 1)}, Case{852, 539, chartColour(2, 1, 1)},
                          Case{427, 540, kBlack}, Case{853, 0, kBlack}, Case{1279, 719, kBlack}}) {
    EXPECT_EQ(at(output, one.x, one.y), one.colour) << one.x << ", " << one.y;
  }
  changing.composer.show(sceneOf({}), 0);
  EXPECT_EQ(cv::countNonZero(changing.composer.compose(changing.pictures, 0).reshape(1)), 0);
}

TEST(Composer, ATileOfACameraWithoutAPictureIsBlack) {
  Changing changing(2);
  changing.composer.show(sceneOf({{field(0, 0), {0, 0, 640, 720}}, {field(1, 1), {640, 0, 640, 720}, 1}}), 0);
  changing.composer.compose(changing.pictures, 0);
  changing.pictures[1].release();
  const cv::Mat& output = changing.composer.compose(changing.pictures, 1);
  EXPECT_EQ(at(output, 100, 100), chartColour(0, 0));
  EXPECT_EQ(at(output, 700, 100), kBlack);
}

TEST(Composer, TransitionsTakeTheirTime) {
  const Colour from = chartColour(0, 0);
  const Colour to = chartColour(4, 2);
  const auto mixed = [&](double part) {
    Colour colour;
    for (int channel = 0; channel < 3; ++channel) {
      colour[channel] = cv::saturate_cast<std::uint8_t>(from[channel] * (1 - part) + to[channel] * part);
    }
    return colour;
  };
  struct Case {
    const char* animation;
    std::int64_t duration;
    std::int64_t t;
    Colour colour;
  };
  for (const Case& one :
       {Case{"cut", 0, 1000, to}, Case{"cut", 100, 1000, to}, Case{"wipe", 100, 1000, to},
        Case{"dissolve", 0, 1000, to}, Case{"dissolve", -5, 1000, to}, Case{"dissolve", 100, 1000, from},
        Case{"dissolve", 100, 1025, mixed(0.25)}, Case{"dissolve", 100, 1050, mixed(0.5)},
        Case{"dissolve", 100, 1100, to}, Case{"dissolve", 100, 5000, to}, Case{"ease", 0, 1000, to},
        Case{"ease", 100, 1000, from}, Case{"ease", 100, 1100, to}}) {
    Changing changing;
    changing.composer.show(sceneOf({{field(0, 0), kWhole}}), 0);
    changing.middleAt(0);
    changing.composer.show(sceneOf({{field(4, 2), kWhole}}, one.animation, one.duration), 1000);
    EXPECT_LE(difference(changing.middleAt(one.t), one.colour), 1)
        << one.animation << " of " << one.duration << " ms at " << one.t << " ms";
  }
}

TEST(Composer, AnEaseMovesTheViewAndTheTile) {
  Changing changing;
  changing.composer.show(sceneOf({{field(0, 0), {0, 0, 400, 400}}}), 0);
  changing.composer.show(sceneOf({{field(2, 0), {800, 0, 400, 400}}}, "ease", 100), 1000);
  const auto leftEdge = [&](std::int64_t t) {
    const cv::Mat& output = changing.composer.compose(changing.pictures, t);
    int x = 0;
    while (at(output, x, 200) == kBlack) {
      ++x;
    }
    return x;
  };
  EXPECT_EQ(leftEdge(1000), 0);
  // A quarter of the time is 5/32 of the way, half of it half of the way.
  EXPECT_EQ(leftEdge(1025), 125);
  EXPECT_EQ(leftEdge(1050), 400);
  EXPECT_EQ(at(changing.composer.compose(changing.pictures, 1050), 600, 200), chartColour(1, 0));
  EXPECT_EQ(leftEdge(1075), 675);
  EXPECT_EQ(leftEdge(1100), 800);
}

// A slope of two levels a pixel tells a view's place to a fraction of a pixel.
TEST(Composer, AnEaseMovesTheViewByFractionsOfAPixel) {
  cv::Mat slope(kHeight, kWidth, CV_8UC3);
  for (int x = 0; x < kWidth; ++x) {
    slope.col(x).setTo(cv::Scalar::all(2 * (x % 128)));
  }
  for (const cv::Rect& view : {cv::Rect(256, 0, 64, 36), cv::Rect(256, 0, 100, 100)}) {
    Composer composer(kOutput, 1, kAnyEnlargement);
    composer.show(sceneOf({{view, kWhole}}), 0);
    composer.show(sceneOf({{view + cv::Point(8, 0), kWhole}}, "ease", 1000), 1000);
    for (int ms = 0; ms <= 1000; ms += 60) {
      const double progress = ms / 1000.0;
      const double left = 8 * progress * progress * (3 - 2 * progress);
      const double expected = 2 * (left + view.width * 640.5 / kWidth - 0.5);
      EXPECT_NEAR(at(composer.compose({slope}, 1000 + ms), 640, 360)[0], expected, 0.7) << ms;
    }
  }
}

TEST(Composer, AnEnlargedLineStaysBright) {
  cv::Mat line(kHeight, kWidth, CV_8UC3, cv::Scalar::all(0));
  line.col(100).setTo(cv::Scalar::all(240));
  Composer composer(kOutput, 1, kAnyEnlargement);
  composer.show(sceneOf({{{0, 0, 320, 180}, kWhole}}), 0);
  // In a straight line between two pixels it would be 210.
  EXPECT_GT(at(composer.compose({line}, 0), 401, 360)[0], 225);
}

TEST(Composer, AViewIsNoSmallerThanTheCamerasPixelsBear) {
  struct Case {
    const char* name;
    cv::Size picture;
    cv::Rect view;
    cv::Rect shown;
  };
  for (const Case& one : {Case{"large enough", {1280, 720}, {100, 100, 640, 360}, {100, 100, 640, 360}},
                          Case{"around its middle", {1280, 720}, {600, 320, 80, 45}, {320, 162, 640, 360}},
                          Case{"at the edge", {1280, 720}, {1200, 0, 80, 45}, {640, 0, 640, 360}},
                          Case{"of more pixels", {2560, 1440}, {100, 100, 320, 180}, {100, 100, 320, 180}},
                          Case{"of too few", {320, 180}, {600, 320, 80, 45}, {0, 0, 1280, 720}}}) {
    cv::Mat map(one.picture, CV_8UC3);
    for (int y = 0; y < map.rows; ++y) {
      for (int x = 0; x < map.cols; ++x) {
        map.at<Colour>(y, x) = {static_cast<std::uint8_t>(200 * x / map.cols),
                                static_cast<std::uint8_t>(200 * y / map.rows), 0};
      }
    }
    Composer composer(kOutput, 1, 2);
    composer.show(sceneOf({{one.view, kWhole}}), 0);
    const cv::Mat& output = composer.compose({map}, 0);
    const auto place = [&](int x, int y) { return at(output, x, y); };
    EXPECT_NEAR(place(0, 0)[0], 200 * one.shown.x / 1280, 2) << one.name;
    EXPECT_NEAR(place(0, 0)[1], 200 * one.shown.y / 720, 2) << one.name;
    EXPECT_NEAR(place(1279, 719)[0], 200 * (one.shown.x + one.shown.width) / 1280, 2) << one.name;
    EXPECT_NEAR(place(1279, 719)[1], 200 * (one.shown.y + one.shown.height) / 720, 2) << one.name;
  }
}

TEST(Composer, AnEaseThatIsInterruptedGoesOnFromWhereItIs) {
  Changing changing;
  changing.composer.show(sceneOf({{field(0, 0), kWhole}}), 0);
  changing.composer.show(sceneOf({{field(2, 0), kWhole}}, "ease", 100), 1000);
  EXPECT_EQ(changing.middleAt(1050), chartColour(1, 0));
  changing.composer.show(sceneOf({{field(1, 2), kWhole}}, "ease", 100), 1050);
  EXPECT_EQ(changing.middleAt(1050), chartColour(1, 0));
  EXPECT_EQ(changing.middleAt(1100), chartColour(1, 1));
  EXPECT_EQ(changing.middleAt(1150), chartColour(1, 2));
}

TEST(Composer, WhatCannotGlideDissolves) {
  struct Case {
    const char* name;
    std::vector<TestTile> to;
  };
  for (const Case& one : {Case{"another camera", {{field(4, 2), kWhole, 1}}},
                          Case{"more tiles", {{field(4, 2), kWhole, 1}, {field(0, 1), {0, 0, 10, 10}}}}}) {
    Changing changing(2);
    changing.composer.show(sceneOf({{field(0, 0), kWhole}}), 0);
    changing.composer.show(sceneOf(one.to, "ease", 100), 1000);
    EXPECT_EQ(changing.middleAt(1000), chartColour(0, 0)) << one.name;
    const Colour half = changing.middleAt(1050);
    EXPECT_NEAR(half[0], (20 + 140) / 2, 1) << one.name;
    EXPECT_NEAR(half[2], (40 + 140) / 2, 1) << one.name;
    EXPECT_EQ(changing.middleAt(1100), chartColour(4, 2, 1)) << one.name;
  }
}

TEST(Composer, ADissolveThatIsInterruptedGoesOnFromTheMixedPicture) {
  for (const char* animation : {"dissolve", "ease"}) {
    Changing changing;
    changing.composer.show(sceneOf({{field(0, 0), kWhole}}), 0);
    changing.composer.show(sceneOf({{field(4, 0), kWhole}}, "dissolve", 100), 1000);
    const Colour half = changing.middleAt(1050);
    changing.composer.show(sceneOf({{field(6, 0), kWhole}}, animation, 100), 1060);
    EXPECT_EQ(changing.middleAt(1060), half) << animation;
    EXPECT_NEAR(changing.middleAt(1110)[0], (80 + 200) / 2, 1) << animation;
    EXPECT_EQ(changing.middleAt(1160), chartColour(6, 0)) << animation;
    // A later one begins with the picture of its own time.
    changing.composer.show(sceneOf({{field(2, 0), kWhole}}, "dissolve", 100), 2000);
    EXPECT_EQ(changing.middleAt(2000), chartColour(6, 0)) << animation;
  }
}

TEST(Composer, AfterASceneThatCannotBeShownTheLastGoodPictureStays) {
  struct Case {
    const char* fault;
    TestTile tile;
  };
  const std::vector<Case> cases{
      {"camera 2 is not known", {field(0, 0), kWhole, 2}},
      {"camera -1 is not known", {field(0, 0), kWhole, -1}},
      {"the source rectangle 160 x 180 at 1121, 0 is not inside 1280 x 720", {{1121, 0, 160, 180}, kWhole}},
      {"the source rectangle 160 x 180 at 0, 541 is not inside 1280 x 720", {{0, 541, 160, 180}, kWhole}},
      {"the source rectangle 160 x 180 at -1, 0 is not inside 1280 x 720", {{-1, 0, 160, 180}, kWhole}},
      {"the source rectangle 0 x 180 at 0, 0 is not inside 1280 x 720", {{0, 0, 0, 180}, kWhole}},
      {"the source rectangle 160 x -180 at 0, 200 is not inside 1280 x 720", {{0, 200, 160, -180}, kWhole}},
      {"the source rectangle 160 x 180 at 0, 0 is not inside 0 x 0", {field(0, 0), kWhole, 0, {0, 0}}},
      {"the destination rectangle 1281 x 720 at 0, 0 is not inside 1280 x 720",
       {field(0, 0), {0, 0, 1281, 720}}},
      {"the destination rectangle 10 x 10 at 0, 711 is not inside 1280 x 720",
       {field(0, 0), {0, 711, 10, 10}}},
  };
  for (const Case& one : cases) {
    Changing changing(2);
    changing.composer.show(sceneOf({{field(3, 1), kWhole}}), 0);
    changing.composer.show(sceneOf({{field(5, 1), kWhole}}, "dissolve", 100), 1000);
    try {
      changing.composer.show(sceneOf({{field(0, 3), {0, 0, 10, 10}}, one.tile}, "cut"), 1050);
      ADD_FAILURE() << "shown: " << one.fault;
    } catch (const SceneFault& fault) {
      EXPECT_STREQ(fault.what(), one.fault);
    }
    // The running transition goes on as well.
    EXPECT_NEAR(changing.middleAt(1050)[0], (110 + 170) / 2, 1) << one.fault;
    EXPECT_EQ(changing.middleAt(1100), chartColour(5, 1)) << one.fault;
  }
}

}  // namespace
}  // namespace fyn::productionrules::video::testing
