// The waits of speaker framing; the recordings speaker_waits_* of tests/replay show them at work.
#include <gtest/gtest.h>

#include "layouts/group/GroupFramingTimerSetting.h"
#include "layouts/speaker/SpeakerFramingTimerSetting.h"
#include "tests/layouts/SpeakerRun.h"

namespace fyn::productionrules::testing {
namespace {

TEST(SpeakerTimerSetting, FollowsTheConfigurationWheneverItIsAskedFor) {
  SpeakerRun run;
  const auto waitToHead = [&] {
    return dynamic_cast<SpeakerFramingTimerSetting&>(*run.layouts().getTimerSetting())
        .frameSpeakerLayoutChangeTimer;
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

}  // namespace
}  // namespace fyn::productionrules::testing
