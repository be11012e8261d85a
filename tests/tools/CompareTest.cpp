#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <sstream>

#include "tests/testing/SceneBuilder.h"
#include "tests/testing/ScratchFolder.h"
#include "tests/tools/RunPrb.h"
#include "tools/base/Random.h"
#include "tools/report/Bootstrap.h"
#include "tools/report/Comparison.h"
#include "tools/report/MeasureRecordings.h"

namespace fyn::productionrules::testing {
namespace {

TEST(Bootstrap, GeneratorGivesTheReferenceNumbers) {
  // The first outputs of SplitMix64 for the seed 0.
  Random random(0);
  EXPECT_EQ(random.next(), 0xE220A8397B1DCDAFU);
  EXPECT_EQ(random.next(), 0x6E789E6AA1B965F4U);
  EXPECT_EQ(random.next(), 0x06C45D188009454FU);
}

TEST(Bootstrap, IntervalOfTwoDifferencesSpansBothAndNeedsTwo) {
  EXPECT_FALSE(bootstrapInterval({}));
  EXPECT_FALSE(bootstrapInterval({1}));
  // Of the means of two draws a quarter is the smaller and a quarter the larger difference.
  const auto interval = bootstrapInterval({1, 3});
  ASSERT_TRUE(interval);
  EXPECT_EQ(interval->mean, 2);
  EXPECT_EQ(interval->low, 1);
  EXPECT_EQ(interval->high, 3);
  EXPECT_TRUE(interval->excludesZero());
}

TEST(Bootstrap, IntervalIsThatOfTheNormalDistributionForManyDifferences) {
  std::vector<double> differences;
  for (int index = 0; index < 400; ++index) {
    differences.push_back(index % 2 == 0 ? -1 : 1);
  }
  // Standard error 1 / sqrt(400) = 0.05; 1.96 of them on each side.
  const auto interval = bootstrapInterval(differences);
  ASSERT_TRUE(interval);
  EXPECT_NEAR(interval->low, -0.098, 0.006);
  EXPECT_NEAR(interval->high, 0.098, 0.006);
  EXPECT_FALSE(interval->excludesZero());
}

MeasuredRecording recordingWith(std::int64_t changes, std::int64_t inViewMs) {
  Measurement measurement;
  measurement.streamMs = 60000;
  measurement.layoutChanges = changes;
  measurement.personTime = {inViewMs, 10000 - inViewMs, 0};
  return {"", measurement, ""};
}

TEST(Comparison, JudgesByTheDirectionOfTheMetric) {
  std::vector<MeasuredRecording> a{recordingWith(10, 5000), recordingWith(20, 6000), recordingWith(30, 5000)};
  std::vector<MeasuredRecording> b{recordingWith(8, 5000), recordingWith(17, 4000), recordingWith(26, 7000)};
  for (const MetricComparison& row : compareMeasurements(a, b)) {
    EXPECT_EQ(row.verdict, row.difference ? Verdict::TooFew : Verdict::Unknown) << row.metric->name;
  }
  a.insert(a.end(), {a[0], a[1], a[2]});
  b.insert(b.end(), {b[0], b[1], b[2]});
  for (const MetricComparison& row : compareMeasurements(a, b)) {
    const std::string name = row.metric->name;
    if (name == "layout_changes_per_minute") {
      EXPECT_EQ(row.difference->mean, -3);
      EXPECT_EQ(row.verdict, Verdict::Better);
    } else if (name == "in_view_percent") {
      // Differences of 0, -20 and +20 per cent.
      EXPECT_EQ(row.pairs, 6U);
      EXPECT_EQ(row.verdict, Verdict::WithinSpread);
    } else if (name == "join_latency_s") {
      EXPECT_EQ(row.pairs, 0U);
      EXPECT_EQ(row.verdict, Verdict::Unknown);
    }
  }
}

/** A person who sits off the centre of the image for a minute, seen five times a second. */
std::string minute(int shift) {
  std::string text;
  for (int t = 0; t < 60000; t += 200) {
    const Scene room = scene().person(1).at(t < 20000 ? 300 : 900 + shift, 300);
    text += nlohmann::json{{"t", t}, {"topic", "/ICDOut"}, {"payload", room.json()}}.dump() + "\n";
  }
  return text;
}

TEST(Compare, ShowsWhatTheWaitsDo) {
  const ScratchFolder folder;
  const std::string slow = folder.write("slow.conf", "");
  const std::string quick = folder.write("quick.conf", "persist.fdtimers.headboundbox.outofframe=0\n");
  const std::string one = folder.write("one.jsonl", minute(0));
  const std::string two = folder.write("two.jsonl", minute(100));

  const PrbRun both = runPrbWith({"compare", slow, quick, one, two, "--json", "-"});
  ASSERT_EQ(both.status, 0) << both.err;
  const nlohmann::json metrics = nlohmann::json::parse(both.out).at("metrics");
  // Both meetings are answered as much sooner as the wait is shorter.
  EXPECT_EQ(metrics.at("off_centre_latency_s").at("verdict"), "too few recordings");
  EXPECT_LE(metrics.at("off_centre_latency_s").at("b"), 0.2);
  EXPECT_GT(metrics.at("off_centre_latency_s").at("a"), 1.5);
  EXPECT_EQ(both.out, runPrbWith({"compare", slow, quick, one, two, "--json", "-"}).out);

  const PrbRun single = runPrbWith({"compare", slow, quick, one});
  ASSERT_EQ(single.status, 0) << single.err;
  EXPECT_NE(single.out.find("no interval is possible"), std::string::npos) << single.out;
}

TEST(MeasureRecording, SeveralSetupsAtOnceDoNotTouchEachOther) {
  const ScratchFolder folder;
  const std::string meeting = folder.file("meeting.jsonl");
  ASSERT_EQ(runPrbWith({"simulate", "--seed", "5", "--minutes", "1", "--people", "4", "--errors", "hard",
                        "--cameras", "2", "-o", meeting})
                .status,
            0);
  std::vector<MeasuredSetup> setups;
  for (const char* const mode : {"1", "2", "4", "5"}) {
    for (const char* const steady : {"0", "1"}) {
      setups.push_back({std::string("persist.feature.steadyframing=") + steady,
                        {{"vendor.talkertracking.flag", mode}, {"vendor.fyndebug.enabled", steady}}});
    }
  }
  std::istringstream noInput;
  const GivenUp never = [] { return false; };
  const auto textOf = [](MeasuredRecording measured) {
    measured.measurement.decisionTime = {};
    return measurementAsJson(measured.measurement).dump() + measured.printed + measured.mode;
  };
  const std::vector<MeasuredRecording> together = measureRecording(meeting, setups, noInput, never);
  ASSERT_EQ(together.size(), setups.size());
  for (std::size_t i = 0; i < setups.size(); ++i) {
    EXPECT_EQ(textOf(together[i]), textOf(measureRecording(meeting, {setups[i]}, noInput, never).front()));
    EXPECT_EQ(together[i].settings, measureRecording(meeting, {setups[i]}, noInput, never).front().settings);
  }
  EXPECT_NE(textOf(together.front()), textOf(together.back()));
}

TEST(MeasureRecording, AsManySetupsAtOnceAsKeepAllThreadsBusy) {
  struct Case {
    std::size_t recordings;
    std::size_t setups;
    unsigned workers;
    std::size_t atOnce;
  };
  for (const Case& c : {Case{1, 1, 2, 1}, Case{1, 2, 2, 1}, Case{8, 2, 2, 2}, Case{1, 40, 2, 5},
                        Case{1, 40, 8, 1}, Case{10, 1000, 2, 16}}) {
    EXPECT_EQ(setupsAtOnce(c.recordings, c.setups, c.workers), c.atOnce) << c.setups << ' ' << c.workers;
  }
}

}  // namespace
}  // namespace fyn::productionrules::testing
