#include <gtest/gtest.h>

#include <algorithm>
#include <nlohmann/json.hpp>

#include "platform/MrJsonUtil.h"
#include "platform/VisionSettings.h"
#include "tests/testing/CapturedLog.h"

namespace fyn::productionrules {
namespace {

using Lines = std::vector<std::string>;

TEST(Log, TheLevelGatesEachPriority) {
  const Lines all = {"E|Tag|e", "W|Tag|w", "I|Tag|i", "D|Tag|d"};
  for (int level = -1; level <= 5; ++level) {
    testing::CapturedLog log(level);
    PRB_LOGE("Tag", "%s", "e");
    PRB_LOGW("Tag", "%s", "w");
    PRB_LOGI("Tag", "%s", "i");
    PRB_LOGD("Tag", "%s", "d");
    const auto count = std::clamp(level, 0, 4);
    EXPECT_EQ(log.lines(), Lines(all.begin(), all.begin() + count)) << "level " << level;
  }
}

TEST(Log, ATextThatTheLevelDropsIsNeverBuilt) {
  int built = 0;
  const auto build = [&built] {
    ++built;
    return "text";
  };
  testing::CapturedLog log(VisionSettings::kInfoLevel);
  PRB_LOGD("Tag", "%s", build());
  EXPECT_EQ(built, 0);
  PRB_LOGI("Tag", "%s", build());
  EXPECT_EQ(built, 1);
}

TEST(Log, KeepsLongLinesWhole) {
  testing::CapturedLog log;
  for (const std::size_t length : {1022U, 1023U, 1024U, 1025U, 100000U}) {
    const std::string text(length, 'x');
    PRB_LOGI("Tag", "%s!", text.c_str());
    EXPECT_EQ(log.take(), Lines{"I|Tag|" + text + "!"}) << length;
  }
}

TEST(ForwardMessage, CollectsEntriesInCallOrder) {
  nlohmann::ordered_json document;
  MrJsonUtil::addMrForwardMsg(document, "/ctl/tracking-mode", "/ctl/tracking-mode", false);
  MrJsonUtil::addMrForwardMsg(document, "/a", "/b", true);
  EXPECT_EQ(document.dump(),
            R"({"forwards":[{"from":"/ctl/tracking-mode","to":"/ctl/tracking-mode","retain":false},)"
            R"({"from":"/a","to":"/b","retain":true}]})");
}

}  // namespace
}  // namespace fyn::productionrules
