#include <limits>
#include <stdexcept>

#include "tests/config/ConfigEnvironment.h"

namespace fyn::productionrules {
namespace {

using testing::ConfigTest;
using testing::Lines;

TEST_F(ConfigTest, NumbersAreReadUpToTheFirstOtherLetter) {
  struct Row {
    const char* value;
    std::int32_t number;
  };
  constexpr Row kRows[] = {
      {"12", 12},
      {"12ms", 12},
      {"ms", 0},
      {"", 0},
      {"-7", -7},
      {"+7", 7},
      {"1.9", 1},
      {"0x10", 0},
      {"1 2", 1},
      {"2147483647", std::numeric_limits<std::int32_t>::max()},
      {"2147483648", std::numeric_limits<std::int32_t>::min()},  // the low 32 bits
      {"99999999999999999999", -1},
  };
  for (const Row& row : kRows) {
    EXPECT_EQ(load(std::string("persist.fdtimers.groupframe.headleft=") + row.value).timersGroupFrameHeadLeft,
              row.number)
        << row.value;
  }
}

TEST_F(ConfigTest, OnlyOneSwitchesOn) {
  for (const char* value : {"true", "yes", "on", "01", "1.0", "2", "0", "", "+1"}) {
    EXPECT_FALSE(load(std::string("persist.feature.sf.usessb=") + value).sfUseSsb) << value;
  }
  EXPECT_TRUE(load("persist.feature.sf.usessb=1").sfUseSsb);
  EXPECT_TRUE(load("persist.feature.sf.usessb= 1 \r\n").sfUseSsb) << "blanks around a value do not count";
}

TEST_F(ConfigTest, KeysAreWholeAndCaseSensitive) {
  const PrConfig& config = load(
      "persist.vendor.SSB.bottom.size=1\npersist.vendor.ssb.lr.size=2\npersist.vendor.SSB.top.size=3\n"
      "persist.vendor.ssb.bottom.size=77\npersist.vendor.SSB.lr.size=77\n persist.vendor.SSB.top.sizes = 77\n"
      "# persist.vendor.SSB.top.size=78\npersist.vendor.SSB.top.size\n");
  EXPECT_EQ(config.ssbBottomSize, 1);
  EXPECT_EQ(config.ssbLrSize, 2);
  EXPECT_EQ(config.ssbTopSize, 3);
}

TEST_F(ConfigTest, TheLastLineOfAKeyWins) {
  EXPECT_EQ(load("animation.cut.duration=5\nanimation.cut.duration=6\n").cutAnimationDuration, 6);
}

TEST_F(ConfigTest, EveryLoadBeginsWithTheDefaults) {
  EXPECT_EQ(load("persist.fdtimers.groupframe.headleft=1\n").timersGroupFrameHeadLeft, 1);
  EXPECT_EQ(load("persist.fdtimers.groupframe.onedge=2\n").timersGroupFrameHeadLeft, 8000);
  EXPECT_EQ(PrConfig::get().timersGroupFrameOnEdge, 2);
}

TEST_F(ConfigTest, AChangeIsSaidOnceWithEveryDifference) {
  const char* const text =
      "animation.ease.duration=121\npersist.fdtimers.groupframe.headleft=9000\npersist.feature.sf.usessb=0\n";
  load(text);
  // In the order of the record, not of the file.
  EXPECT_EQ(environment.log.take(),
            (Lines{"I|PrConfig|reloaded", "I|PrConfig|timersGroupFrameHeadLeft: 8000 -> 9000",
                   "I|PrConfig|sfUseSsb: 1 -> 0", "I|PrConfig|easeAnimationDuration: 120 -> 121"}));
  load(text);
  EXPECT_EQ(environment.log.take(), Lines{}) << "the same file again";
  load("");
  EXPECT_EQ(environment.log.take().size(), 4U);
}

TEST_F(ConfigTest, AFileThatCannotBeUsedIsSaidAndCountsAsMissing) {
  load("animation.cut.duration=5");
  environment.log.take();
  ServiceState::current().setFiles([](const std::string& path) -> std::optional<std::string> {
    throw std::runtime_error(path + " is not read: it is a pipe");
  });
  PrConfig::load(kPath);
  EXPECT_EQ(environment.log.take().front(),
            "E|PrConfig|the configuration file /etc/fyn.conf is not read: it is a pipe");
  EXPECT_EQ(PrConfig::get().cutAnimationDuration, PrConfig::DEFAULT.cutAnimationDuration);
}

TEST_F(ConfigTest, WithoutAFileThePropertiesStillApply) {
  environment.files.clear();
  EXPECT_EQ(loadProperty("vendor.talkertracking.flag", "2").framingMode, 2);
  EXPECT_EQ(environment.log.take(), (Lines{"I|PrConfig|reloaded", "I|PrConfig|framingMode: 0 -> 2"}));
}

TEST_F(ConfigTest, SettingsKeepToTheirSource) {
  EXPECT_EQ(load("vendor.talkertracking.flag=4\nvendor.fynpilot.fynOperatingMode=1\n").framingMode, 0);
  EXPECT_EQ(getFynOperatingMode(), FynOperatingMode::Standalone);
  EXPECT_EQ(loadProperty("persist.fdtimers.groupframe.headleft", "1").timersGroupFrameHeadLeft, 8000);
  EXPECT_EQ(environment.log.take(), Lines{});
}

TEST_F(ConfigTest, APropertyThatIsNoValueCountsAsNotSet) {
  EXPECT_TRUE(loadProperty("persist.feature.newpf", "maybe").newPfFeatureEnabled);
  const Lines lines = environment.log.take();
  ASSERT_EQ(lines.size(), 1U);
  EXPECT_NE(lines[0].find("persist.feature.newpf"), std::string::npos) << lines[0];
  EXPECT_FALSE(loadProperty("persist.feature.newpf", "Off").newPfFeatureEnabled);
}

TEST_F(ConfigTest, TheOperatingModeKeepsToItsThreeValues) {
  struct Row {
    const char* property;
    FynOperatingMode before;
    FynOperatingMode after;
    Lines log;
  };
  const Row rows[] = {
      {"0", FynOperatingMode::Standalone, FynOperatingMode::Standalone, {}},
      {"1",
       FynOperatingMode::Standalone,
       FynOperatingMode::Primary,
       {"I|PrConfig|reloaded", "I|PrConfig|fynOperatingMode: 0 -> 1"}},
      {"2",
       FynOperatingMode::Primary,
       FynOperatingMode::Secondary,
       {"I|PrConfig|reloaded", "I|PrConfig|fynOperatingMode: 1 -> 2"}},
      {"0",
       FynOperatingMode::Secondary,
       FynOperatingMode::Standalone,
       {"I|PrConfig|reloaded", "I|PrConfig|fynOperatingMode: 2 -> 0"}},
      {"3",
       FynOperatingMode::Secondary,
       FynOperatingMode::Secondary,
       {"E|PrConfig|Invalid FynOperatingMode value: 3"}},
      {"-1",
       FynOperatingMode::Primary,
       FynOperatingMode::Primary,
       {"E|PrConfig|Invalid FynOperatingMode value: -1"}},
  };
  for (const Row& row : rows) {
    PrConfig former;
    former.fynOperatingMode = row.before;
    PrConfig::set(former);
    EXPECT_EQ(loadProperty("vendor.fynpilot.fynOperatingMode", row.property).fynOperatingMode, row.after)
        << row.property;
    EXPECT_EQ(getFynOperatingMode(), row.after);
    EXPECT_EQ(environment.log.take(), row.log) << row.property;
  }
}

TEST_F(ConfigTest, ARefusedOperatingModeHoldsNothingElseBack) {
  environment.files[kPath] = "animation.cut.duration=5\n";
  EXPECT_EQ(loadProperty("vendor.fynpilot.fynOperatingMode", "9").cutAnimationDuration, 5);
}

TEST_F(ConfigTest, TheLogLevelComesIntoForceAfterTheChangeHasBeenSaid) {
  load("persist.tvpr.logs=0\n");
  EXPECT_EQ(environment.log.take(), (Lines{"I|PrConfig|reloaded", "I|PrConfig|prLogLevel: 3 -> 0"}));
  PRB_LOGE("Test", "silenced");
  load("persist.tvpr.logs=2\n");
  EXPECT_EQ(environment.log.take(), Lines{}) << "level 0 silences its own end";
  PRB_LOGW("Test", "heard");
  PRB_LOGI("Test", "not heard");
  EXPECT_EQ(environment.log.take(), Lines{"W|Test|heard"});
}

TEST(ConfigurationPath, IsTakenAfreshFromTheEnvironment) {
  unsetenv("FYN_CONF_NAME");
  EXPECT_EQ(configurationPath(), "/etc/fyn.conf");
  setenv("FYN_CONF_NAME", "other.conf", 1);
  EXPECT_EQ(configurationPath(), "other.conf");
  unsetenv("FYN_CONF_NAME");
  EXPECT_EQ(configurationPath(), "/etc/fyn.conf");
}

}  // namespace
}  // namespace fyn::productionrules
