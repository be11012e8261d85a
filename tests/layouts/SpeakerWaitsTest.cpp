// When the picture of speaker framing changes: pairs of pictures and their waits. The recordings
// speaker_waits_* of tests/replay show the other pairs.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>

#include "layouts/group/GroupFramingTimerSetting.h"
#include "layouts/speaker/SpeakerFramingTimerSetting.h"
#include "tests/layouts/SpeakerRun.h"

namespace fyn::productionrules::testing {
namespace {

// Two pairs of neighbours, and two people who sit alone.
Scene meeting(const std::set<std::int32_t>& speakers) {
  static const std::map<std::int32_t, std::pair<std::int32_t, std::int32_t>> kSeats{
      {1, {150, 200}}, {2, {270, 200}}, {3, {650, 200}}, {4, {770, 200}}, {5, {1200, 200}}, {6, {450, 600}}};
  Scene result;
  for (const auto& [id, seat] : kSeats) {
    result.person(id).at(seat.first, seat.second).speaking(speakers.count(id) != 0);
  }
  return result;
}

struct WaitCase {
  const char* from;
  const char* to;
  std::uint64_t waitMs;
  const char* timer;
};

const std::map<std::string, Scene>& stagings() {
  static const std::map<std::string, Scene> kStagings{
      {"ROOM", scene()},        {"GROUP 1 2 3 4 5 6", meeting({})}, {"HEAD 5", meeting({5})},
      {"HEAD 6", meeting({6})}, {"PROXIMITY 1 2", meeting({1})},    {"SUBSET_SPEAKER 3 4 5", meeting({3, 5})},
  };
  return kStagings;
}

constexpr WaitCase kWaits[] = {
    {"HEAD 5", "GROUP 1 2 3 4 5 6", 1100, "anyToGFLayoutChangeTimer"},
    {"HEAD 5", "ROOM", 1100, "anyToGFLayoutChangeTimer"},
    {"SUBSET_SPEAKER 3 4 5", "ROOM", 1100, "anyToGFLayoutChangeTimer"},
    {"GROUP 1 2 3 4 5 6", "ROOM", 1100, "anyToGFLayoutChangeTimer"},
    {"ROOM", "GROUP 1 2 3 4 5 6", 1100, "anyToGFLayoutChangeTimer"},
    {"PROXIMITY 1 2", "ROOM", 1200, "proxToGFLayoutChangeTimer"},
    {"ROOM", "PROXIMITY 1 2", 1300, "anyToProxLayoutChangeTimer"},
    {"HEAD 5", "HEAD 6", 1800, "frameSpeakerLayoutChangeTimer"},
    {"ROOM", "HEAD 5", 1800, "frameSpeakerLayoutChangeTimer"},
    {"ROOM", "SUBSET_SPEAKER 3 4 5", 1900, "otherToSsLayoutChangeTimer"},
    {"PROXIMITY 1 2", "SUBSET_SPEAKER 3 4 5", 1900, "otherToSsLayoutChangeTimer"},
};

void chooseWaits(PrConfig& config) {
  config.sfUseSsb = false;
  config.sfLayoutHold = false;
  config.timersLayoutChangeSfAny2Gf = 1100;
  config.timersLayoutChangeSfProx2Gf = 1200;
  config.timersLayoutChangeSfAny2Prox = 1300;
  config.timersLayoutChangeSfProx2Prox = 1400;
  config.timersLayoutChangeSfSs2Prox = 1500;
  config.timersLayoutChangeSfProx2Head = 1600;
  config.timersLayoutChangeSfSs2Head = 1700;
  config.timersLayoutChangeSfFrameSpeaker = 1800;
  config.timersLayoutChangeSfOther2Ss = 1900;
}

class SpeakerWaits : public ::testing::TestWithParam<WaitCase> {};

TEST_P(SpeakerWaits, ChangeComesExactlyAfterItsWait) {
  const WaitCase& row = GetParam();
  SpeakerRun run;
  run.with(chooseWaits);
  run.watch(stagings().at(row.from), 300);
  ASSERT_EQ(run.picture(), row.from);
  run.takePictures();
  run.takeDecisions();

  const std::uint64_t changedAt = run.now();
  run.watch(stagings().at(row.to), 3000);
  EXPECT_EQ(run.takePictures(),
            (std::vector<std::string>{std::to_string(changedAt + row.waitMs) + " " + row.to}));
  const std::vector<LayoutDecision> decisions = run.takeDecisions();
  ASSERT_FALSE(decisions.empty());
  EXPECT_EQ(decisions.front().kind, DecisionKind::Pending);
  EXPECT_STREQ(decisions.front().timer, row.timer);
  EXPECT_EQ(decisions.front().waitMs, row.waitMs);
  const auto adopted = std::find_if(decisions.begin(), decisions.end(), [](const LayoutDecision& decision) {
    return decision.kind == DecisionKind::Adopted;
  });
  ASSERT_NE(adopted, decisions.end());
  EXPECT_EQ(adopted->waitedMs, row.waitMs);
}

TEST_P(SpeakerWaits, ChangeThatRevertsInTimeIsNeverSeen) {
  const WaitCase& row = GetParam();
  SpeakerRun run;
  run.with(chooseWaits);
  run.watch(stagings().at(row.from), 300);
  run.takePictures();
  run.watch(stagings().at(row.to), row.waitMs);
  run.watch(stagings().at(row.from), 3000);
  EXPECT_EQ(run.takePictures(), std::vector<std::string>{});
}

INSTANTIATE_TEST_SUITE_P(Pairs, SpeakerWaits, ::testing::ValuesIn(kWaits), [](const auto& test) {
  std::string name = std::string(test.param.from) + "_to_" + test.param.to;
  std::replace(name.begin(), name.end(), ' ', '_');
  return name;
});

TEST(SpeakerTimerSetting, FollowsTheConfigurationWheneverItIsAskedFor) {
  SpeakerRun run;
  const auto waitToHead = [&] {
    return dynamic_cast<SpeakerFramingTimerSetting&>(*run.layouts().getTimerSetting())
        .layoutChangeWait(FramingType::GROUP, FramingType::HEAD)
        .ms;
  };
  EXPECT_EQ(waitToHead(), 100U);
  run.with([](PrConfig& config) { config.timersLayoutChangeSfFrameSpeaker = 250; });
  EXPECT_EQ(waitToHead(), 250U);
}

TEST(SpeakerTimerSetting, StaysOfItsOwnKind) {
  SpeakerRun run;
  run.layouts().setTimerSetting(std::make_shared<GroupFramingTimerSetting>());
  run.layouts().setTimerSetting(nullptr);
  EXPECT_NE(dynamic_cast<SpeakerFramingTimerSetting*>(run.layouts().getTimerSetting().get()), nullptr);
}

TEST(SpeakerTimerSetting, HasNoWaitForAPictureThatIsNeverShown) {
  const SpeakerFramingTimerSetting setting(PrConfig::DEFAULT);
  EXPECT_EQ(setting.layoutChangeWait(FramingType::HEAD, FramingType::PARTIAL_GROUP).ms, 0U);
}

}  // namespace
}  // namespace fyn::productionrules::testing
