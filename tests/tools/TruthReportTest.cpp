// `prb report` against the truth: what the detector missed counts, and what is wrong with the pictures is
// told.
#include <gtest/gtest.h>

#include "tests/testing/ScratchFolder.h"
#include "tests/tools/MeasuredMeeting.h"

namespace fyn::productionrules::testing {
namespace {

using nlohmann::json;
using Tile = MeasuredMeeting::Tile;

// Person 1 sits at the left, 2 at the right, 3 passes by at the far right; heads of 100 x 100 pixels.
json person(int id, bool speaks, int camera = 1) {
  const int left = id == 1 ? 200 : id == 2 ? 900 : 1150;
  return {{"id", id},
          {"fynCamId", camera},
          {"bbox", {{"left", left}, {"top", 300}, {"right", left + 100}, {"bottom", 400}}},
          {"speaks", speaks}};
}

/** 24 seconds of a detector that sees nobody, in pictures of one or two tiles. */
MeasuredMeeting meeting(bool withTruth) {
  MeasuredMeeting recording;
  const auto tiles = [&](int t, int leftSource, int rightSource) {
    recording.show(t, {Tile{{leftSource, 170, 320, 360}, {0, 0, 640, 720}},
                       Tile{{rightSource, 170, 320, 360}, {640, 0, 640, 720}}});
  };
  const auto room = [&](int t, int speaker) {
    if (withTruth) {
      // Another camera sees person 1 too, who is one person for all that.
      recording.tell(t, {person(1, speaker == 1), person(1, false, 2), person(2, speaker == 2)});
    }
  };
  room(0, 0);
  recording.see(0, scene());
  recording.show(0, {0, 0, 1280, 720});
  tiles(2000, 90, 790);
  room(3000, 1);
  tiles(6000, 790, 90);
  room(8000, 0);
  recording.show(9000, {90, 170, 640, 360});
  room(10000, 2);
  tiles(12000, 790, 90);
  room(15000, 0);
  room(16000, 1);
  tiles(17000, 90, 500);
  room(17000, 0);
  tiles(18000, 90, 90);
  tiles(19000, 90, 920);
  recording.show(21000, {90, 170, 360, 360});
  room(21000, 1);
  if (withTruth) {
    recording.tell(22000, {person(1, true), person(2, false), person(3, false)});
  }
  recording.wait(24000);
  return recording;
}

struct Expected {
  const char* name;
  double value;
};

// Who is whole in the picture: both at 0 (2 s), 2 (4 s), 6 (3 s) and 12 (5 s), else 1 alone; 2 is cut at 19
// (2 s). Person 3 is there for the last 2 s, so there are 24 + 24 + 2 person-seconds.
constexpr Expected kTruthByHand[] = {
    {"in_view_percent", 38 / 50.0 * 100},
    {"cut_percent", 2 / 50.0 * 100},
    {"off_screen_percent", 10 / 50.0 * 100},
    {"everybody_in_view_percent", 14 / 24.0 * 100},
    // Person 3.
    {"never_shown_percent", 2 / 50.0 * 100},
    {"never_shown_persons", 1},
    // The right tile shows the wall at 17, person 1 too at 18, four fifths of person 2 at 19; at 21 a square
    // fills the output.
    {"nobody_in_it_percent", 1 / 24.0 * 100},
    {"shown_twice_percent", 1 / 24.0 * 100},
    {"head_cut_percent", 2 / 24.0 * 100},
    {"distorted_percent", 3 / 24.0 * 100},
    // Shots of 2, 4, 3, 3, 5, 1, 1 and 2 s.
    {"short_shots_percent", 2 / 8.0 * 100},
    // From both to person 1 at 9 and back at 12.
    {"there_and_back_per_minute", 1 * 60 / 24.0},
    // The tiles change places at 6; person 1 comes back to the left one at 17.
    {"tile_hops_per_minute", 2 * 60 / 24.0},
    // 100 pixels are 200 of 720 in all but the first picture.
    {"head_size_percent", 27.8},
    // Turns of 2 s: person 1 from 3 to 8 s and from 21 on, person 2 from 10 to 15 s. Person 2 comes into the
    // picture at 12.
    {"singled_out_percent", 11 / 13.0 * 100},
    // From 21 on the picture shows one of two, then of three.
    {"close_percent", 3 / 13.0 * 100},
    {"switch_s", 2},
    {"switch_p95_s", 2},
    // With the second from 16 to 17 s.
    {"speaker_framed_percent", 12 / 14.0 * 100},
};

TEST(TruthReport, ComputesWhatIsWorkedOutByHand) {
  const json overall = reportOn(meeting(true).text()).at("overall");
  EXPECT_EQ(overall.at("against"), "the truth");
  for (const auto& [name, expected] : kTruthByHand) {
    const json& value = overall.at("metrics").at(name);
    ASSERT_TRUE(value.is_number()) << name << ": " << value;
    EXPECT_NEAR(value.get<double>(), expected, 1e-9) << name;
  }
}

TEST(TruthReport, SaysWhatItIsMeasuredAgainst) {
  const std::pair<std::vector<std::string>, const char*> cases[] = {
      {{meeting(true).text()}, "\nMeasured against the truth.\n"},
      {{meeting(false).text()}, "\nMeasured against the vision results.\n"},
      {{meeting(true).text(), meeting(false).text()},
       "\nMeasured against the truth where a recording tells it, else the vision results.\n"}};
  for (const auto& [recordings, line] : cases) {
    const ScratchFolder folder;
    std::vector<std::string> command{"report"};
    for (const std::string& recording : recordings) {
      command.push_back(folder.write(std::to_string(command.size()) + ".jsonl", recording));
    }
    const std::string out = runPrbWith(command).out;
    EXPECT_NE(out.find(line), std::string::npos) << out;
  }
  EXPECT_TRUE(reportOn(meeting(false).text()).at("overall").at("metrics").at("in_view_percent").is_null())
      << "the detector saw nobody";
}

}  // namespace
}  // namespace fyn::productionrules::testing
