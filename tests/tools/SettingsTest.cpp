#include <gtest/gtest.h>

#include "config/ConfigKeys.h"
#include "tests/testing/ScratchFolder.h"
#include "tests/tools/RunPrb.h"

namespace fyn::productionrules::testing {
namespace {

TEST(ConfigCheck, NamesEveryFaultWithItsLine) {
  const std::vector<std::pair<const char*, std::string>> cases{
      {"", "standard input: no faults\n"},
      {"# note\n\n  animation.ease.duration = 200 \r\n", "standard input: no faults\n"},
      {"persist.feature.sf.usessb=0\npersist.tvpr.logs=4\n", "standard input: no faults\n"},
      {"animation.ease.durration=1\n",
       "standard input:1: unknown key animation.ease.durration; did you mean animation.ease.duration?\n"},
      {"\npersist.vendor.ssb.top.size=1\n",
       "standard input:2: unknown key persist.vendor.ssb.top.size; did you mean "
       "persist.vendor.SSB.top.size?\n"},
      {"colour=red\n", "standard input:1: unknown key colour\n"},
      {"=5\n", "standard input:1: no key before the '=': the line is skipped\n"},
      {"animation.ease.duration=12ms\n",
       "standard input:1: animation.ease.duration must be a whole number, not '12ms'\n"},
      {"animation.ease.duration=\n",
       "standard input:1: animation.ease.duration must be a whole number, not ''\n"},
      {"animation.ease.duration=99999999999\n",
       "standard input:1: animation.ease.duration must be from 0 to 2147483647, not 99999999999\n"},
      {"animation.ease.duration=-1\n",
       "standard input:1: animation.ease.duration must be from 0 to 2147483647, not -1\n"},
      {"persist.framelayout.headsingle.topline=101\n",
       "standard input:1: persist.framelayout.headsingle.topline must be from 0 to 100, not 101\n"},
      {"persist.tvpr.logs=5\n", "standard input:1: persist.tvpr.logs must be from 0 to 4, not 5\n"},
      {"persist.feature.sf.usessb=true\n",
       "standard input:1: persist.feature.sf.usessb must be 1 or 0, not 'true': in a configuration file "
       "anything "
       "but 1 is off\n"},
      {"vendor.talkertracking.flag=1\n",
       "standard input:1: vendor.talkertracking.flag is a system property, which this file does not set; "
       "use: prb "
       "prop set vendor.talkertracking.flag 1\n"},
      {"persist.tvpr.logs 4\n", "standard input:1: no '=': the line is skipped\n"},
      {"persist.tvpr.logs=4\npersist.tvpr.logs=3\n",
       "standard input:2: persist.tvpr.logs replaces its value in line 1\n"},
      {"colour=red\nnothing\nanimation.cut.duration=x\n",
       "standard input:1: unknown key colour\nstandard input:2: no '=': the line is skipped\n"
       "standard input:3: animation.cut.duration must be a whole number, not 'x'\n"},
  };
  for (const auto& [text, findings] : cases) {
    const PrbRun run = runPrbWith({"config", "check", "-"}, text);
    EXPECT_EQ(run.out, findings);
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(run.status, run.out == "standard input: no faults\n" ? 0 : 1);
  }
}

TEST(ConfigCheck, TheExampleHasNoFaults) {
  const PrbRun example = runPrbWith({"config", "example"});
  EXPECT_NE(example.out.find("\nanimation.ease.duration=120\n"), std::string::npos);
  EXPECT_EQ(runPrbWith({"config", "check", "-"}, example.out).out, "standard input: no faults\n");
}

TEST(GivenSettings, HoldWhateverTheRecordingSays) {
  const ScratchFolder folder;
  const std::string meeting = runPrbWith({"simulate", "--seed", "1", "--minutes", "1", "-o", "-"}).out;
  const std::string recorded = R"({"t":0,"property":{"vendor.talkertracking.flag":"4"}})"
                               "\n"
                               R"({"t":0,"config":{"persist.fdtimers.layoutchange.rmtoother":"0"}})"
                               "\n" +
                               meeting;
  const std::vector<std::string> given{
      "replay",     "-",
      "--property", "vendor.talkertracking.flag=1",
      "--config",   folder.write("given.conf", "persist.feature.steadyframing=1\n")};
  const std::string effects = runPrbWith(given, recorded).out;
  EXPECT_EQ(effects, runPrbWith(given, meeting).out);
  EXPECT_NE(effects, runPrbWith({"replay", "-"}, recorded).out);
}

/** `prb prop` on a store of the test's own. */
class Prop : public ::testing::Test {
 protected:
  PrbRun prop(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "prop");
    arguments.insert(arguments.end(), {"--properties", mFolder.file("properties.db")});
    return runPrbWith(arguments);
  }

 private:
  ScratchFolder mFolder;
};

TEST_F(Prop, WhatWasSetIsThereForTheNextRun) {
  EXPECT_EQ(prop({"set", "vendor.talkertracking.flag", "4"}).status, 0);
  const PrbRun get = prop({"get", "vendor.talkertracking.flag"});
  EXPECT_EQ(get.out, "4\n");
  EXPECT_EQ(get.err, "");
  EXPECT_NE(prop({"list"}).out.find("  vendor.talkertracking.flag\n      integer, default 0, set to 4\n"),
            std::string::npos);
  EXPECT_EQ(prop({"unset", "vendor.talkertracking.flag"}).status, 0);
  EXPECT_EQ(prop({"get", "vendor.talkertracking.flag"}).out, "0\n");
  EXPECT_EQ(prop({"unset", "vendor.talkertracking.flag"}).err,
            "vendor.talkertracking.flag is not set; its default holds\n");
}

TEST_F(Prop, WhatIsNotSetHasItsDefault) {
  const PrbRun property = prop({"get", "vendor.fyndebug.timer"});
  EXPECT_EQ(property.out, "5\n");
  EXPECT_EQ(property.err, "vendor.fyndebug.timer is not set; its default holds\n");
  EXPECT_EQ(property.status, 0);
  const PrbRun key = prop({"get", "animation.ease.duration"});
  EXPECT_EQ(key.out, "120\n");
  EXPECT_EQ(key.err, "animation.ease.duration is set by the configuration file; this is its default\n");
}

TEST_F(Prop, ListHasEveryKeyWithItsMeaning) {
  const std::string list = prop({"list"}).out;
  for (const ConfigKey& row : kConfigKeys) {
    if (row.source != ConfigSource::Fixed) {
      EXPECT_NE(list.find("  " + std::string(row.key) + "\n"), std::string::npos) << row.key;
      EXPECT_NE(list.find(row.meaning), std::string::npos) << row.key;
    }
  }
}

TEST_F(Prop, WrongKeysAndValuesAreRefused) {
  const std::vector<std::pair<std::vector<std::string>, const char*>> cases{
      {{"get", "vendor.fyndebug.timr"},
       "prb prop get: unknown property vendor.fyndebug.timr; did you mean vendor.fyndebug.timer?\n"},
      {{"set", "no.such.key.at.all", "1"}, "prb prop set: unknown property no.such.key.at.all\n"},
      {{"set", "vendor.fyndebug.timer", "soon"},
       "prb prop set: vendor.fyndebug.timer must be a whole number, not 'soon'\n"},
      {{"set", "vendor.talkertracking.flag", "6"},
       "prb prop set: vendor.talkertracking.flag must be from 0 to 5, not 6\n"},
      {{"set", "vendor.fyndebug.enabled", "maybe"},
       "prb prop set: vendor.fyndebug.enabled must be 1 or 0 (or true, false), not 'maybe'\n"},
      {{"set", "persist.tvpr.logs", "4"},
       "prb prop set: persist.tvpr.logs is set by the configuration file, not by a property\n"},
  };
  for (const auto& [arguments, error] : cases) {
    const PrbRun run = prop(arguments);
    EXPECT_EQ(run.err, error);
    EXPECT_EQ(run.status, 2);
  }
  EXPECT_EQ(prop({"set", "no.such.key.at.all", "1", "--force"}).status, 0);
  EXPECT_EQ(prop({"get", "no.such.key.at.all"}).out, "1\n");
}

}  // namespace
}  // namespace fyn::productionrules::testing
