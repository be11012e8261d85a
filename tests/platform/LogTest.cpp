#include <gtest/gtest.h>

#include <algorithm>
#include <nlohmann/json.hpp>

#include "platform/LogText.h"
#include "platform/MrJsonUtil.h"
#include "platform/StderrLog.h"
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

TEST(LogText, IsOneLineThatATerminalShows) {
  const std::string longest(kLongestLogText, 'x');
  for (const auto& [text, expected] : std::initializer_list<std::pair<std::string, std::string>>{
           {"", ""},
           {"\n", ""},
           {"plain ~\n\n", "plain ~"},
           {"a\nI Forged: line\r\tb", "a\\nI Forged: line\\r\\tb"},
           {"\x1b[2J\x07\x7f", "\\x1b[2J\\x07\\x7f"},
           {{"a\0b", 3}, "a\\x00b"},
           {"\u00e4 \u20ac \U0001f600 \uffff \U0010ffff", "\u00e4 \u20ac \U0001f600 \uffff \U0010ffff"},
           {"\u009b2J\u00a0", "\\xc2\\x9b2J\u00a0"},
           {"\xc0\x9b \xe0\x80\x9b \xf0\x80\x80\x9b", "\\xc0\\x9b \\xe0\\x80\\x9b \\xf0\\x80\\x80\\x9b"},
           {"\x9b \xff \xed\xa0\x80 \xc3", "\\x9b \\xff \\xed\\xa0\\x80 \\xc3"},
           {"\xe2\x82", "\\xe2\\x82"},
           {longest + "\n", longest},
           {longest + "y", longest + "... (2049 bytes)"},
           {longest.substr(1) + "\u00e4", longest.substr(1) + "... (2049 bytes)"},
           {longest.substr(3) + "\x1b", longest.substr(3) + "... (2046 bytes)"}}) {
    EXPECT_EQ(cleanLogText(text), expected);
  }
}

TEST(StderrLog, CleansTheText) {
  ::testing::internal::CaptureStderr();
  StderrLog().write(LogPriority::warning, "Tag", "a\n\x1b[2Jb\n");
  const std::string line = ::testing::internal::GetCapturedStderr();
  EXPECT_EQ(line.substr(std::string("2026-01-31 12:34:56.789").size()), " W Tag: a\\n\\x1b[2Jb\n");
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
