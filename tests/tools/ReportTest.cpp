#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <map>
#include <nlohmann/json.hpp>

#include "tests/testing/SceneBuilder.h"
#include "tests/testing/ScratchFolder.h"
#include "tests/tools/MeasuredMeeting.h"
#include "tests/tools/RunPrb.h"

namespace fyn::productionrules::testing {
namespace {

using nlohmann::json;

/** A person with a head of 80 x 80 pixels in camera 1. */
Scene& person(Scene& room, int id, int left, int top) {
  return room.person(id).camera(1).box({left, top, left + 80, top + 80});
}

/**
 * Twelve seconds between a wide picture A (the whole image) and a close one B (its middle, twice as large).
 * Person 1 sits in the middle, 2 at the left, 3 on the right edge of the image, 4 on the left edge of B.
 */
std::string meeting() {
  MeasuredMeeting recording;
  const auto wide = [&](int t) { recording.show(t, {0, 0, 1280, 720}); };
  const auto close = [&](int t) { recording.show(t, {320, 180, 640, 360}); };
  const auto see = [&](int t, std::initializer_list<int> ids, int speaker) {
    static const std::map<int, std::array<int, 2>> kPlaces{
        {1, {600, 300}}, {2, {100, 300}}, {3, {1240, 300}}, {4, {300, 200}}};
    Scene room = scene();
    for (const int id : ids) {
      person(room, id, kPlaces.at(id)[0], kPlaces.at(id)[1]).speaking(id == speaker);
    }
    recording.see(t, room);
  };
  wide(0);
  see(0, {1}, 0);
  see(1000, {1}, 0);
  see(2000, {1, 2}, 0);
  close(3000);
  see(3000, {1, 2}, 0);
  see(4000, {1, 2}, 1);
  wide(5000);
  see(5000, {1, 2}, 0);
  see(6000, {1, 2, 3}, 0);
  close(7000);
  see(7000, {1, 2, 3}, 0);
  see(8000, {2, 3, 4}, 0);
  see(9000, {2, 3, 4}, 4);
  wide(10500);
  see(11000, {2, 3, 4}, 4);
  recording.wait(12500);
  return recording.text();
}

// Measured time: 0 to 10 s (the result of 9 s counts for one second) and 11 to 12 s, so 11 s.
const std::pair<const char*, double> kByHand[] = {
    // Changes at 3, 5, 7 and 10.5 s: 4 in 11 s. Each goes back, within 5 s, to what was there before it,
    // from the second one on. Between them: 2, 2 and 3.5 s.
    {"layout_changes_per_minute", 4 * 60 / 11.0},
    {"reframes_per_minute", 0},
    {"changes_per_minute", 4 * 60 / 11.0},
    {"flickers_per_minute", 3 * 60 / 11.0},
    {"between_changes_s", 2},
    {"shortest_between_changes_s", 2},
    // Person-seconds. A from 0: 1 + 1 + 2 in view. B from 3: 2 in view, 2 off. A from 5: 2 + 3 in view
    // (person 3
    // as far as the image shows it). B from 7: 1 in view, 2 off; twice 1 cut, 2 off. A from 11: 3 in view.
    {"in_view_percent", 15 / 25.0 * 100},
    {"cut_percent", 2 / 25.0 * 100},
    {"off_screen_percent", 8 / 25.0 * 100},
    // A from 0 to 3, from 5 to 7 and from 11 to 12 s.
    {"everybody_in_view_percent", 6 / 11.0 * 100},
    // 80 of 720 pixels in A (12 s of shown heads), 160 of 720 in B (5 s).
    {"head_size_percent", 11.1},
    {"smallest_head_percent", 11.1},
    // A: 300 / 720 for 5 s, then 200 / 720 for 1 s. B: 120 / 360 for 3 s, then 20 / 360 for 2 s.
    // In order: 5.6 (2 s), 27.8 (1 s), 33.3 (3 s), 41.7 (5 s).
    {"head_room_percent", 33.3},
    // Eyes at 340 / 720 in A, at the last at the mean of 340, 340 and 240; at 160 / 360, then 60 / 360 in B.
    // Less a
    // third: 9.3 (1 s), 11.1 (3 s), 13.9 (5 s), 16.7 (2 s).
    {"thirds_deviation_percent", 13.9},
    // Person 4 joins, person 1 leaves and the subjects are off centre at 8 s, person 4 speaks at 9 s: all
    // answered at 10.5 s. With person 2 the group is off centre from 2 s to the change at 3 s. Person 2 and 3
    // come
    // into view by themselves, person 1 speaks in view: no events.
    {"join_latency_s", 2.5},
    {"leave_latency_s", 2.5},
    {"off_centre_latency_s", 1},
    {"off_centre_latency_p95_s", 2.5},
    {"speak_latency_s", 1.5},
    {"latency_s", 2.5},
    {"latency_p95_s", 2.5},
    {"unanswered_percent", 0},
    // Person 1 for 1 s in view, person 4 for 1 s cut and 1 s in view.
    {"speaker_framed_percent", 2 / 3.0 * 100},
    {"speaker_in_view_percent", 2 / 3.0 * 100},
};

TEST(Report, ComputesWhatIsWorkedOutByHand) {
  const json report = reportOn(meeting());
  for (const json& part : {report.at("overall"), report.at("recordings").at(0)}) {
    for (const auto& [name, expected] : kByHand) {
      const json& value = part.at("metrics").at(name);
      ASSERT_TRUE(value.is_number()) << name << ": " << value;
      EXPECT_NEAR(value.get<double>(), expected, 1e-9) << name;
    }
  }
}

/** What a device of its own sees: a result a second, two persons far apart. */
class StandaloneRecording {
 public:
  void see(const Scene& room) {
    mText += json{{"t", mTime}, {"topic", "/ICDOut"}, {"payload", room.json()}}.dump() + "\n";
    mTime += 1000;
  }
  std::string text() const { return mText + json{{"t", mTime}}.dump() + "\n"; }

 private:
  int mTime = 0;
  std::string mText;
};

// The newcomer is off screen until the wait of 4 s has run out, then comes back from a second outside within
// it.
TEST(Report, TellsWhatEachWaitDid) {
  StandaloneRecording recording;
  const Scene alone = scene().person(1).at(300, 300);
  const Scene both = scene().person(1).at(300, 300).person(2).at(1100, 300);
  for (int second = 0; second < 20; ++second) {
    recording.see(second < 2 || second == 4 ? alone : both);
  }
  const json report = reportOn(recording.text(), {"--property", "vendor.talkertracking.flag=1"});
  EXPECT_EQ(report.at("overall").at("waits"), (json{{{"key", "persist.fdtimers.layoutchange.rmtoother"},
                                                     {"ran_out", 1},
                                                     {"dropped", 1},
                                                     {"running_s", 6.0},
                                                     {"off_screen_s", 6.0}}}));
}

// Streams 0 and 3 show both persons, streams 1 and 2 one each. Person 2 steps half out of stream 2 for the
// second of two seconds: 11 of 12 person-seconds in own frames, 1 of 2 on stream 2.
TEST(Report, TellsTheStreamsApart) {
  StandaloneRecording recording;
  recording.see(scene().person(1).at(200, 300).person(2).at(1000, 300));
  recording.see(scene().person(1).at(200, 300).person(2).at(1220, 300));
  const auto expectShares = [&](double ownFrame, double inView, std::vector<std::string> options) {
    options.insert(options.end(), {"--property", "vendor.talkertracking.flag=5"});
    const json metrics = reportOn(recording.text(), options).at("overall").at("metrics");
    EXPECT_NEAR(metrics.at("subject_in_view_percent").get<double>(), ownFrame, 1e-9);
    EXPECT_EQ(metrics.at("in_view_percent"), inView);
  };
  expectShares(11 / 12.0 * 100, 100, {});
  expectShares(100, 100, {"--stream", "0"});
  expectShares(100, 50, {"--stream", "1"});
  expectShares(50, 25, {"--stream", "2"});
}

// Somebody comes in silently while person 1 speaks; only the group has to show the newcomer.
TEST(Report, ExpectsNoPictureOfASilentNewcomerFromSpeakerFraming) {
  StandaloneRecording recording;
  for (int second = 0; second < 40; ++second) {
    Scene room = scene().person(1).at(200, 300).speaking().person(2).at(640, 300);
    if (second >= 3) {
      room.person(3).at(1200, 600);
    }
    recording.see(room);
  }
  const auto joins = [&](const char* mode) {
    const std::string property = std::string("vendor.talkertracking.flag=") + mode;
    return reportOn(recording.text(), {"--property", property}).at("overall").at("events").at("join");
  };
  EXPECT_EQ(joins("2"), (json{{"answered", 0}, {"unanswered", 0}}));
  EXPECT_EQ(joins("1"), (json{{"answered", 1}, {"unanswered", 0}}));
}

// Everybody speaks, so the picture is of the group.
TEST(Report, TellsASpeakerInViewFromOneWhoIsFramed) {
  StandaloneRecording recording;
  for (int second = 0; second < 10; ++second) {
    recording.see(scene().person(1).at(200, 300).speaking().person(2).at(1000, 300).speaking());
  }
  const json metrics =
      reportOn(recording.text(), {"--property", "vendor.talkertracking.flag=2"}).at("overall").at("metrics");
  EXPECT_EQ(metrics.at("speaker_in_view_percent"), 100);
  EXPECT_EQ(metrics.at("speaker_framed_percent"), 0);
}

// People framing may doubt the newcomer, the figures do not.
TEST(Report, CountsWhomTheVisionResultsShowAndNotWhomTheEngineBelieves) {
  StandaloneRecording recording;
  recording.see(scene().person(1).at(200, 300));
  recording.see(scene().person(1).at(200, 300).person(2).at(1100, 300));
  const ScratchFolder folder;
  const std::string steady = folder.write("steady.conf", "persist.feature.steadyframing=1\n");
  const json metrics =
      reportOn(recording.text(), {"--property", "vendor.talkertracking.flag=4", "--config", steady})
          .at("overall")
          .at("metrics");
  EXPECT_NEAR(metrics.at("in_view_percent").get<double>(), 2 / 3.0 * 100, 1e-9);
  EXPECT_EQ(metrics.at("everybody_in_view_percent"), 50);
}

TEST(Report, HasNoFigureWhereThereIsNothingToMeasure) {
  const json metrics = reportOn("{\"t\":0}\n").at("overall").at("metrics");
  EXPECT_EQ(metrics.size(), 41U);
  for (const auto& [name, value] : metrics.items()) {
    EXPECT_TRUE(value.is_null()) << name << ": " << value;
  }
  EXPECT_EQ(runPrbWith({"report", "-"}, "{\"t\":0}\n").err,
            "standard input: holds no vision results (/ICDOut), nothing to measure\n");
}

TEST(Report, AddsUpTheRecordings) {
  const ScratchFolder folder;
  const std::string once = folder.write("once.jsonl", meeting());
  const std::string again = folder.write("again.jsonl", meeting());
  const std::string silent = folder.write("silent.jsonl", "{\"t\":0}\n");
  const PrbRun run = runPrbWith({"report", once, again, silent, "--json", "-"});
  ASSERT_EQ(run.status, 0) << run.err;
  const json report = json::parse(run.out);
  EXPECT_EQ(report.at("overall").at("layoutChanges"), 8);
  EXPECT_EQ(report.at("overall").at("events").at("join"), (json{{"answered", 2}, {"unanswered", 0}}));
  // Twice the same meeting has the same rates and shares.
  EXPECT_EQ(report.at("overall").at("metrics"), report.at("recordings").at(0).at("metrics"));
}

TEST(Report, PageStandsAloneAndHoldsHostileNamesAsText) {
  const ScratchFolder folder;
  const std::string recording = folder.write("<!--<script>alert(1)<.jsonl", meeting());
  const PrbRun run = runPrbWith({"report", recording, "--json", "-", "--html", folder.file("report.html")});
  ASSERT_EQ(run.status, 0) << run.err;
  const std::string page = folder.read("report.html");
  EXPECT_EQ(page.find("http"), std::string::npos);
  const json data = dataOfPage(page);
  const json report = json::parse(run.out);
  EXPECT_EQ(data.at("overall"), report.at("overall"));
  EXPECT_EQ(data.at("definitions").size(), data.at("overall").at("metrics").size());
  for (const auto& [name, value] : data.at("overall").at("metrics").items()) {
    EXPECT_TRUE(data.at("definitions").contains(name)) << name;
  }
  EXPECT_EQ(data.at("isTooFew"), true);
  EXPECT_EQ(data.at("recordings").at(0).at("settings"), (json{{"vendor.fynpilot.fynOperatingMode", "2"}}));
  EXPECT_EQ(data.at("recordings").at(0).at("recording"), recording);
  EXPECT_EQ(data.at("recordings").at(0).at("course").at("changes").size(),
            report.at("overall").at("layoutChanges").get<std::size_t>() +
                report.at("overall").at("reframes").get<std::size_t>() + 1);
}

TEST(Report, AFaultInTheRecordingTakesNoOlderOutput) {
  const ScratchFolder folder;
  const std::string html = folder.write("old.html", "old");
  const std::string figures = folder.file("new.json");
  EXPECT_EQ(runPrbWith({"report", "-", "--json", figures, "--html", html}, "nonsense\n").status, 2);
  EXPECT_EQ(folder.read("old.html"), "old");
  EXPECT_FALSE(std::filesystem::exists(figures));
}

TEST(Report, SaysWhatIsWrongInOneLine) {
  const ScratchFolder folder;
  const std::string broken = folder.write("broken.jsonl", "{\"t\":0}\n{\"t\":-1}\n");
  const std::string missing = "No such file or directory\n";
  const std::pair<std::vector<std::string>, std::string> rows[] = {
      {{"report"}, "prb report: recordings is required (see 'prb report --help')\n"},
      {{"report", "-", "-"}, "prb report: standard input (-) can be measured only once\n"},
      {{"report", "/nowhere.jsonl"}, "prb report: /nowhere.jsonl: cannot be opened for reading: " + missing},
      {{"report", "-", "--html", "/nowhere/x"},
       "prb report: /nowhere/x: cannot be opened for writing: " + missing},
      {{"report", broken}, "prb report: " + broken + ":2: "},
      {{"report", "-", "--stream", "7"}, "prb report: no recording shows anything on stream 7\n"},
  };
  for (const auto& [arguments, fault] : rows) {
    expectRefused(arguments, fault, meeting());
  }
}

}  // namespace
}  // namespace fyn::productionrules::testing
