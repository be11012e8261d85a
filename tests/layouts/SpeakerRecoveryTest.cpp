// When speaker framing stops trusting the speaker's position, and for how long.
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/layouts/SpeakerRun.h"

namespace fyn::productionrules::testing {
namespace {

constexpr std::uint64_t kStepMs = 40;

// Person 1 speaks while `speaks`, at `x`; two more sit far away.
Scene speakerAt(std::int32_t x, bool speaks = true) {
  return scene().person(1).at(x, 300).speaking(speaks).person(2).at(900, 300).person(3).at(1150, 300);
}

class SpeakerRecovery : public ::testing::Test {
 protected:
  SpeakerRecovery() {
    run.stepMs = kStepMs;
    run.with([](PrConfig& config) {
      config.sfRecoveryMode = true;
      config.stdDeviationDequeSize = 10;
      config.stdDeviationOverThreshold = 5;
      config.stdDeviationThreshold = 50;
      config.realHeadCounterMax = 20;
      config.timersLayoutChangeSfAny2Gf = 400;
      config.timersLayoutChangeSfOther2Ss = 400;
    });
  }

  /** The speaker's head jumps between two places in every result. */
  void jump(int results, std::int32_t distance) {
    for (int i = 0; i < results; ++i) {
      run.see(speakerAt(200 + (i % 2) * distance));
    }
  }

  std::string reasonOfGroup() {
    const std::vector<LayoutDecision> decisions = run.takeDecisions();
    const auto group = std::find_if(decisions.begin(), decisions.end(), [](const LayoutDecision& decision) {
      return decision.kind == DecisionKind::Adopted && decision.to == FramingType::GROUP;
    });
    return group == decisions.end() ? "no group" : group->reason;
  }

  SpeakerRun run;
};

struct DeviationCase {
  const char* name;
  int results;
  std::int32_t distance;
  const char* reason;
};

// Two places d apart in turn deviate by d / 2. The first nine results fill the samples.
TEST_F(SpeakerRecovery, NeedsAFullListAndEnoughUnsteadyResults) {
  constexpr DeviationCase kCases[] = {
      {"exactly the threshold", 60, 100, "no group"},
      {"above it", 60, 102, "recovery: unsteady speaker position"},
      {"too few unsteady results", 9 + 5, 200, "no group"},
      {"one more", 9 + 6, 200, "recovery: unsteady speaker position"},
  };
  for (const DeviationCase& row : kCases) {
    run.engine<SpeakerFramingLayout>();
    jump(row.results, row.distance);
    // Silence adds no samples and gives the group the time to come.
    run.watch(speakerAt(200, false), 600);
    EXPECT_EQ(reasonOfGroup(), row.reason) << row.name;
  }
}

TEST_F(SpeakerRecovery, DoesNotCountAnEmptyRoom) {
  run.with([](PrConfig& config) { config.timersLayoutChangeSfAny2Gf = 60000; });
  run.watch(speakerAt(200), 400);
  run.watch(scene(), 4000);
  ASSERT_EQ(run.picture(), "SUBSET_SPEAKER [1]");
  EXPECT_EQ(run.layouts().getDebugDataInJson().find("nobody tagged"), std::string::npos);
}

struct SwitchCase {
  bool mode;
  bool deviation;
  bool untagged;
  const char* afterJumps;
  const char* afterSilence;
};

TEST_F(SpeakerRecovery, HasASwitchForEachSign) {
  constexpr const char* kUnsteady = "recovery: unsteady speaker position";
  constexpr const char* kUntagged = "recovery: nobody tagged";
  constexpr SwitchCase kCases[] = {{false, true, true, "no group", "no group"},
                                   {true, false, true, "no group", kUntagged},
                                   {true, true, false, kUnsteady, "no group"}};
  for (const SwitchCase& row : kCases) {
    run.with([&](PrConfig& config) {
      config.sfRecoveryMode = row.mode;
      config.sfRecoveryModeStdDev = row.deviation;
      config.sfRecoveryModeNoHeadTagged = row.untagged;
    });
    run.engine<SpeakerFramingLayout>();
    jump(40, 200);
    EXPECT_EQ(reasonOfGroup(), row.afterJumps);
    run.engine<SpeakerFramingLayout>();
    run.watch(speakerAt(200), 400);
    run.watch(speakerAt(200, false), 2000);
    EXPECT_EQ(reasonOfGroup(), row.afterSilence);
  }
}

TEST_F(SpeakerRecovery, BearsAnySetting) {
  for (const std::int32_t value :
       {std::numeric_limits<std::int32_t>::min(), -1, 0, 1, std::numeric_limits<std::int32_t>::max()}) {
    run.with([&](PrConfig& config) {
      config.stdDeviationDequeSize = value;
      config.stdDeviationOverThreshold = value;
      config.stdDeviationThreshold = value;
      config.realHeadCounterMax = value;
      config.timersSfRecoveryMode = value;
      config.timersSfRecoveryDetectWindow = value;
      config.ssbLrSize = value;
      config.ssbTopSize = value;
      config.ssbBottomSize = value;
      config.ss2GroupCoverage = value;
    });
    run.engine<SpeakerFramingLayout>();
    jump(60, 200);
    run.watch(speakerAt(200, false), 2000);
    EXPECT_FALSE(run.current().frames.empty()) << value;
  }
}

}  // namespace
}  // namespace fyn::productionrules::testing
