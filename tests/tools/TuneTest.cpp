#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <nlohmann/json.hpp>
#include <sstream>

#include "tests/testing/Folders.h"
#include "tests/testing/SceneBuilder.h"
#include "tests/testing/ScratchFolder.h"
#include "tests/tools/RunPrb.h"
#include "tools/tune/GoalExpression.h"
#include "tools/tune/ParetoFront.h"
#include "tools/tune/SearchSpace.h"

namespace fyn::productionrules::testing {
namespace {

/** 6 changes per minute, 40 per cent of person-time in view, nobody spoke. */
Measurement measured() {
  Measurement measurement;
  measurement.streamMs = 60000;
  measurement.layoutChanges = 4;
  measurement.reframes = 2;
  measurement.personTime = {400, 100, 500};
  return measurement;
}

TEST(GoalExpression, ComputesWithTheUsualRules) {
  const std::pair<const char*, double> rows[] = {
      {"changes_per_minute", 6},
      {"2 + 3 * 4", 14},
      {"(2 + 3) * 4", 20},
      {"10 - 3 - 2", 5},
      {"-2 * -3", 6},
      {"--1", 1},
      {" .5*in_view_percent ", 20},
      {"layout_changes_per_minute-reframes_per_minute", 2},
      {"changes_per_minute + 0.1 * (100 - in_view_percent)", 12},
  };
  for (const auto& [text, value] : rows) {
    EXPECT_EQ(GoalExpression(text).value(measured()), value) << text;
  }
  EXPECT_FALSE(GoalExpression("1 + 0 * speaker_framed_percent").value(measured()));
}

TEST(GoalExpression, NamesThePositionOfAFault) {
  const std::pair<std::string, const char*> rows[] = {
      {"", "--goal, position 1: a metric, a number or '(' is missing"},
      {"1 +", "--goal, position 4: a metric, a number or '(' is missing"},
      {"1 + * 2", "--goal, position 5: a metric, a number or '(' is expected, not '*'"},
      {"(1 + 2", "--goal, position 7: ')' is missing"},
      {"1 2", "--goal, position 3: unexpected '2'"},
      {"1)", "--goal, position 2: unexpected ')'"},
      {"1 / 2", "--goal, position 3: unexpected '/'"},
      {"1.2.3", "--goal, position 1: '1.2.3' is no number"},
      {"1e5", "--goal, position 2: unexpected 'e'"},
      {"2 * speed", "--goal, position 5: unknown metric 'speed' ('prb tune --list-metrics' lists them)"},
      {std::string(1000, '('), "--goal, position 101: nested too deeply"},
  };
  for (const auto& [text, fault] : rows) {
    EXPECT_EQ(usageFaultOf([&goal = text] { GoalExpression{goal}; }), fault);
  }
}

constexpr const char* kOutside = "persist.fdtimers.groupframe.outside";
constexpr const char* kOnEdge = "persist.fdtimers.groupframe.onedge";

std::vector<std::int32_t> valuesOf(const std::string& range) {
  std::vector<std::int32_t> values;
  for (const Candidate& candidate : gridOf({parseKeyRange(range)})) {
    values.push_back(candidate.front().second);
  }
  return values;
}

TEST(SearchSpace, ReadsRanges) {
  const std::string key = kOutside;
  EXPECT_EQ(valuesOf(key + "=0..4000:2000"), (std::vector<std::int32_t>{0, 2000, 4000}));
  EXPECT_EQ(valuesOf(key + "=0..4000:3000"), (std::vector<std::int32_t>{0, 3000}));
  EXPECT_EQ(valuesOf(key + "=0..8000"), (std::vector<std::int32_t>{0, 2000, 4000, 6000, 8000}));
  EXPECT_EQ(valuesOf(key + "=-1..1"), (std::vector<std::int32_t>{-1, 0, 1}));
  EXPECT_EQ(valuesOf(key + "=7..7"), (std::vector<std::int32_t>{7}));
  EXPECT_EQ(parseKeyRange(key + "=-2147483648..2147483647:2147483647").count(), 3U);
}

TEST(SearchSpace, SaysWhatIsWrongWithARange) {
  const std::string key = kOutside;
  const std::vector<std::pair<std::string, std::string>> rows{
      {key + "=5", "a range is given as KEY=FROM..TO[:STEP], not '" + key + "=5'"},
      {key + "=a..5", "FROM and TO of '" + key + "=a..5' must be integers"},
      {key + "=1..99999999999", "FROM and TO of '" + key + "=1..99999999999' must be integers"},
      {key + "=9..5", "FROM is larger than TO in '" + key + "=9..5'"},
      {key + "=1..5:0", "STEP of '" + key + "=1..5:0' must be an integer of 1 or more"},
      {"no.key=1..5", "unknown configuration key no.key ('prb config example' lists them)"},
      {"persist.fdtimers.groupframe.outsid=1..5",
       "unknown configuration key persist.fdtimers.groupframe.outsid; did you mean " + key +
           "? ('prb config example' lists them)"},
      {"vendor.fynpilot.fynOperatingMode=0..2",
       "'vendor.fynpilot.fynOperatingMode' is a system property, not a key of the configuration file"},
  };
  for (const auto& [text, fault] : rows) {
    EXPECT_EQ(usageFaultOf([&range = text] { parseKeyRange(range); }), fault);
  }
}

TEST(SearchSpace, CombinesAndDraws) {
  const std::vector<KeyRange> ranges{{kOutside, 0, 9, 1}, {kOnEdge, 0, 1, 1}};
  const std::vector<Candidate> grid = gridOf(ranges);
  ASSERT_EQ(grid.size(), 20U);
  EXPECT_EQ(candidateText(grid[3]), std::string(kOutside) + "=1 " + kOnEdge + "=1");
  EXPECT_EQ(parseCandidate(candidateText(grid[3])), grid[3]);

  const std::vector<Candidate> drawn = randomOf(ranges, 12, 7);
  EXPECT_EQ(drawn.size(), 12U);
  for (const Candidate& candidate : drawn) {
    EXPECT_EQ(std::count(drawn.begin(), drawn.end(), candidate), 1) << candidateText(candidate);
  }
  EXPECT_EQ(randomOf(ranges, 12, 7), drawn);
  EXPECT_NE(randomOf(ranges, 12, 8), drawn);
  EXPECT_EQ(randomOf(ranges, 100, 7), grid);

  EXPECT_THROW(gridOf({ranges[0], ranges[0]}), UsageError);
  EXPECT_THROW(gridOf({{kOutside, 0, 99999, 1}, {kOnEdge, 0, 99999, 1}}), UsageError);
}

TEST(ParetoFront, KeepsWhatNothingDominates) {
  const double never = std::numeric_limits<double>::infinity();
  const std::vector<TradeOff> tradeOffs{
      {1, 5, 90},     // the calmest that answers
      {2, 3, 90},     // faster
      {2, 4, 90},     // dominated by the one before
      {3, 3, 95},     // shows more
      {2, 3, 90},     // equal to the second
      {0, never, 60}  // never changes, never answers
  };
  EXPECT_EQ(paretoFront(tradeOffs), (std::vector<std::size_t>{0, 1, 3, 5}));
  EXPECT_EQ(paretoFront({}), std::vector<std::size_t>{});
}

TEST(ParetoFront, ADistortedPictureIsNoTradeOff) {
  Measurement measurement;
  measurement.observedMs = measurement.streamMs = 1000;
  measurement.distortedMs = 10;
  EXPECT_TRUE(tradeOffOf(measurement));
  measurement.distortedMs = 11;
  EXPECT_FALSE(tradeOffOf(measurement));
}

/** A person who moves from left to right after 20 s, seen five times a second for a minute. */
std::string minute() {
  std::string text;
  for (int t = 0; t < 60000; t += 200) {
    const Scene room = scene().person(1).at(t < 20000 ? 300 : 900, 300);
    text += nlohmann::json{{"t", t}, {"topic", "/ICDOut"}, {"payload", room.json()}}.dump() + "\n";
  }
  return text;
}

class Tune : public ::testing::Test {
 protected:
  PrbRun tune(std::vector<std::string> more = {}) {
    more.insert(more.begin(),
                {"tune", mRecording, "--key", "persist.fdtimers.headboundbox.outofframe=0..4000:2000",
                 "--goal", "latency_s", "--results", mFolder.file("tune.jsonl")});
    return runPrbWith(more);
  }
  std::vector<std::string> results() const {
    std::istringstream text(mFolder.read("tune.jsonl"));
    std::vector<std::string> lines;
    for (std::string line; std::getline(text, line);) {
      lines.push_back(line);
    }
    std::sort(lines.begin(), lines.end());
    return lines;
  }

  ScratchFolder mFolder;
  std::string mRecording = mFolder.write("it's.jsonl", minute());
};

TEST_F(Tune, FindsTheShortestWaitAndGoesOnWhereItStopped) {
  const PrbRun run = tune({"--configs", mFolder.file("front"), "--html", mFolder.file("front.html")});
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_NE(run.out.find("Smallest goal: 0.2 with persist.fdtimers.headboundbox.outofframe=0\n"),
            std::string::npos)
      << run.out;
  const std::string best = mFolder.read("front/best.conf");
  EXPECT_NE(best.find("\npersist.fdtimers.headboundbox.outofframe=0\n"), std::string::npos) << best;
  const nlohmann::json page = dataOfPage(mFolder.read("front.html"));
  EXPECT_EQ(page.at("candidates").at(page.at("best").get<std::size_t>()).at("values"),
            "persist.fdtimers.headboundbox.outofframe=0");
  EXPECT_EQ(page.at("candidates").size(), 3U);
  const std::vector<std::string> all = results();
  ASSERT_EQ(all.size(), 3U);

  // A search that was ended in the middle of a line.
  mFolder.write("tune.jsonl", all[1] + "\n" + all[0].substr(0, 100));
  EXPECT_EQ(tune().out, run.out);
  EXPECT_EQ(results(), all);
}

TEST_F(Tune, AKeyThatChangesNothingIsNamedAndLeftOut) {
  const PrbRun run = tune({"--key", "persist.sf.fdtimers.tighten=1..2", "--configs", mFolder.file("front")});
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_NE(run.err.find("no value of persist.sf.fdtimers.tighten changed anything"), std::string::npos)
      << run.err;
  EXPECT_EQ(run.err.find("outofframe"), std::string::npos) << run.err;
  EXPECT_EQ((run.out + mFolder.read("front/best.conf")).find("tighten"), std::string::npos) << run.out;
}

TEST_F(Tune, AFaultyConfigurationIsRefused) {
  const std::string faulty = mFolder.write("faulty.conf", "animation.ease.durration=1\n");
  EXPECT_EQ(tune({"--config", faulty}).err, "prb tune: " + faulty +
                                                ":1: unknown key animation.ease.durration; did you mean "
                                                "animation.ease.duration?\n");
  EXPECT_EQ(runPrbWith({"replay", mRecording, "--config", faulty}).err,
            faulty + ":1: unknown key animation.ease.durration; did you mean animation.ease.duration?\n");
}

TEST_F(Tune, JobsGiveTheSameResults) {
  const PrbRun run = tune();
  const std::vector<std::string> all = results();
  mFolder.write("tune.jsonl", "");
  ASSERT_EQ(tune({"--jobs-out", mFolder.file("jobs")}).status, 0);
  const std::string command = "cd " + programFolder() + " && PATH=.:$PATH sh -e " + mFolder.file("jobs") +
                              " > " + mFolder.file("tune.jsonl");
  ASSERT_EQ(std::system(command.c_str()), 0);
  EXPECT_EQ(results(), all);
  EXPECT_EQ(tune({"--workers", "1"}).out, run.out);
}

TEST_F(Tune, ARecordingThatWasMadeAnewIsMeasuredAnew) {
  ASSERT_EQ(tune().status, 0);
  mFolder.write("it's.jsonl", minute() + "{\"t\":60000}\n");
  const PrbRun run = tune({"--jobs-out", "-"});
  EXPECT_EQ(std::count(run.out.begin(), run.out.end(), '\n'), 3) << run.out;
}

TEST_F(Tune, SaysWhatIsWrongInOneLine) {
  const std::string empty = mFolder.write("empty.jsonl", "{\"t\":0}\n");
  const PrbRun nothing =
      runPrbWith({"tune", empty, "--key", "persist.fdtimers.headboundbox.outofframe=0..4000:2000",
                  "--results", mFolder.file("nothing.jsonl")});
  EXPECT_EQ(nothing.status, 2);
  EXPECT_EQ(nothing.err, empty +
                             ": holds no vision results (/ICDOut), nothing to measure\n"
                             "prb tune: there is nothing to tune on\n");

  ASSERT_EQ(tune().status, 0);
  const std::string file = mFolder.file("tune.jsonl");
  const std::string other = mFolder.write("other.conf", "persist.fdtimers.groupframe.outside=1\n");
  EXPECT_EQ(tune({"--config", other}).err,
            "prb tune: " + file +
                ":1: made with another --config or --property; name another file with --results\n");
  mFolder.write("tune.jsonl", "nonsense\n");
  EXPECT_EQ(tune().err, "prb tune: " + file + ":1: not a result of 'prb tune'\n");
  EXPECT_EQ(mFolder.read("tune.jsonl"), "nonsense\n");

  expectRefused({"tune"}, "prb tune: RECORDING is required\n");
  expectRefused({"tune", "x"}, "prb tune: --key is required: which keys to tune, and over which values\n");
  expectRefused({"tune", "x", "--job", "5"},
                "a job is given as 'KEY=VALUE KEY=VALUE ...' with integers, not '5'\n");
}

}  // namespace
}  // namespace fyn::productionrules::testing
