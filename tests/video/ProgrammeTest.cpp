#include <gtest/gtest.h>

#include <fstream>
#include <nlohmann/json.hpp>

#include "tests/testing/ScratchFolder.h"
#include "tests/video/Pictures.h"
#include "tools/video/camera/Programme.h"
#include "tools/video/camera/StatusLine.h"

namespace fyn::productionrules::video::testing {
namespace {

using nlohmann::json;
using Lines = std::vector<std::string>;

json rectangle(const cv::Rect& rect) {
  return {{"xoffset", rect.x}, {"yoffset", rect.y}, {"width", rect.width}, {"height", rect.height}};
}

/** A stream of a document that shows one field of the chart of a camera. */
json stream(int id, int sceneNumber, std::int64_t timestamp, const cv::Rect& source, int camera = 0) {
  return {{"streamid", id},
          {"sceneNumber", sceneNumber},
          {"animation", "cut"},
          {"duration", 0},
          {"timestamp", timestamp},
          {"destRef", {{"width", kWidth}, {"height", kHeight}}},
          {"scene",
           {{{"fynCamId", camera},
             {"srcRef", {{"width", kWidth}, {"height", kHeight}}},
             {"source", rectangle(source)},
             {"dest", rectangle(kWhole)}}}}};
}

std::string document(const std::vector<json>& streams) {
  return json{{"streams", streams}}.dump();
}

/** Composes frames 1, 2, ... of one camera that were taken every 100 ms from 1000 on, and notes what is seen.
 */
class Evening {
 public:
  /** One line per stream: its id, its scene, and the field of the chart in its middle. */
  Lines frame(int number, bool nextIsKnown = true) {
    Lines seen;
    const std::int64_t taken = 900 + 100 * number;
    programme.compose(mPictures, {number, taken},
                      nextIsKnown ? std::optional<std::int64_t>(taken + 100) : std::nullopt,
                      [&](const ComposedPicture& one) {
                        EXPECT_EQ(one.frame.number, number);
                        const Colour middle = at(one.picture, kWidth / 2, kHeight / 2);
                        seen.push_back(std::to_string(one.stream) + ": scene " +
                                       (one.sceneNumber ? std::to_string(*one.sceneNumber) : "none") +
                                       ", column " + std::to_string((middle[0] - 20) / 30));
                      });
    return seen;
  }

  Lines complaints;
  Programme programme{
      {kWidth, kHeight}, 1, [this](const std::string& text) { complaints.push_back(text); }, 1000};

 private:
  const std::vector<cv::Mat> mPictures{chart({kWidth, kHeight})};
};

TEST(Programme, ASceneBeginsWithTheFrameThatItWasDecidedOn) {
  struct Case {
    std::int64_t timestamp;
    int first;
  };
  // Frame n is taken at 900 + 100 n; a time before the first frame, or within a frame that is done, counts
  // late.
  for (const Case& one : {Case{0, 1}, Case{1000, 1}, Case{1099, 1}, Case{1100, 2}, Case{1199, 2},
                          Case{1200, 3}, Case{1399, 4}}) {
    Evening evening;
    evening.programme.add(document({stream(0, 5, one.timestamp, field(6, 0))}));
    for (int number = 1; number <= 5; ++number) {
      const bool shown = evening.frame(number) == Lines{"0: scene 5, column 6"};
      EXPECT_EQ(shown, number >= one.first) << one.timestamp << " at frame " << number;
    }
  }
}

TEST(Programme, WithoutTheNextFramesTimeWhatHasComeCounts) {
  Evening evening;
  evening.programme.add(document({stream(0, 5, 99999, field(6, 0))}));
  EXPECT_EQ(evening.frame(1, false), Lines{"0: scene 5, column 6"});
}

TEST(Programme, ALateSceneBeginsWithTheNextFrameAndTheLastOfSeveralWins) {
  Evening evening;
  evening.frame(1);
  evening.frame(2);
  evening.programme.add(document({stream(0, 5, 1000, field(6, 0))}));
  evening.programme.add(document({stream(0, 6, 1050, field(3, 0))}));
  EXPECT_EQ(evening.frame(3), Lines{"0: scene 6, column 3"});
}

TEST(Programme, ATimeThatIsGivenReplacesThatOfTheDocument) {
  Evening evening;
  evening.programme.add(document({stream(0, 5, 1000, field(6, 0))}), 1300);
  EXPECT_EQ(evening.frame(3)[0].substr(0, 13), "0: scene none");
  EXPECT_EQ(evening.frame(4), Lines{"0: scene 5, column 6"});
}

TEST(Programme, StreamsAreIndependent) {
  Evening evening;
  evening.programme.add(document({stream(0, 1, 1000, field(1, 0)), stream(2, 1, 1000, field(5, 0))}));
  EXPECT_EQ(evening.frame(1), (Lines{"0: scene 1, column 1", "2: scene 1, column 5"}));
  evening.programme.add(document({stream(0, 2, 1100, field(3, 0))}));
  EXPECT_EQ(evening.frame(2), (Lines{"0: scene 2, column 3", "2: scene 1, column 5"}));
  std::vector<json> many;
  for (int id = 10; id < 40; ++id) {
    many.push_back(stream(id, 3, 1200, field(2, 0)));
  }
  evening.programme.add(document(many));
  EXPECT_EQ(evening.frame(3).size(), 16U);
  EXPECT_EQ(evening.complaints.size(), 16U);
  EXPECT_EQ(evening.complaints.front(), "stream 24, scene 3: more than 16 streams");
}

TEST(Programme, WhatCannotBeShownIsToldOnceAndLeavesThePictureAsItIs) {
  Evening evening;
  evening.programme.add(document({stream(0, 1, 1000, field(1, 0))}));
  evening.frame(1);
  const std::string unknown = document({stream(0, 2, 1000, field(5, 0), 3)});
  const std::string unknownAgain = document({stream(0, 9, 1000, field(5, 0), 3)});
  const std::string outside = document({stream(0, 2, 1000, {1200, 0, 160, 180})});
  const std::string newStream = document({stream(1, 2, 1000, field(5, 0), 3)});
  int number = 1;
  for (const std::string& bad :
       {unknown, unknownAgain, outside, newStream, newStream, std::string("{"), std::string("{")}) {
    evening.programme.add(bad);
    EXPECT_EQ(evening.frame(++number), Lines{"0: scene 1, column 1"});
  }
  ASSERT_EQ(evening.complaints.size(), 4U);
  EXPECT_EQ(evening.complaints[0], "stream 0, scene 2: camera 3 is not known");
  EXPECT_NE(evening.complaints[1].find("is not inside 1280 x 720"), std::string::npos);
  EXPECT_EQ(evening.complaints[2], "stream 1, scene 2: camera 3 is not known");
  EXPECT_EQ(evening.complaints[3].substr(0, 20), "not a scene document");
  // After a good one the same fault is news again.
  evening.programme.add(document({stream(0, 3, 1000, field(4, 0))}));
  EXPECT_EQ(evening.frame(++number), Lines{"0: scene 3, column 4"});
  evening.programme.add(outside);
  EXPECT_EQ(evening.frame(++number), Lines{"0: scene 3, column 4"});
  EXPECT_EQ(evening.complaints.size(), 5U);
}

TEST(StatusLine, SaysWhatGoesOnOnceASecond) {
  struct Case {
    std::optional<std::int64_t> scene;
    std::size_t tiles;
    std::vector<std::int64_t> heads;
    const char* text;
  };
  const std::string mode = "PeopleFraming";
  for (const Case& one : {Case{std::nullopt, 0, {}, "0 people, no scene yet: the whole picture, 42 ms old"},
                          Case{7, 1, {4}, "1 person, PeopleFraming, scene 7 of 1 tile, 42 ms old"},
                          Case{8, 3, {4, 5, 4}, "2 people, PeopleFraming, scene 8 of 3 tiles, 42 ms old"}}) {
    const std::vector<SceneTile> tiles(one.tiles);
    const cv::Mat picture;
    std::vector<ShownHead> heads;
    for (const std::int64_t person : one.heads) {
      heads.push_back({0, person, false, {}});
    }
    const productionrules::testing::ScratchFolder folder;
    StatusLine line(folder.file("status"));
    for (const std::int64_t ms : {1000, 1400, 1999, 2000, 500, 600}) {
      line.shown({0, {1, ms}, one.scene, mode, tiles, picture}, heads, 42);
    }
    std::ifstream written(folder.file("status"));
    int lines = 0;
    for (std::string text; std::getline(written, text); ++lines) {
      EXPECT_EQ(text, one.text);
    }
    EXPECT_EQ(lines, 3);
  }
}

}  // namespace
}  // namespace fyn::productionrules::video::testing
