#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>

#include "platform/TextFile.h"

namespace fyn::productionrules {
namespace {

using Lines = std::vector<std::string>;

Lines walk(std::string_view text) {
  Lines lines;
  forEachConfigLine(text, [&](std::string_view key, std::string_view value, int line) {
    lines.push_back(std::to_string(line) + ":" + std::string(key) + "=" + std::string(value));
  });
  return lines;
}

struct ConfigRow {
  const char* rule;
  std::string_view text;
  Lines expected;
};

TEST(ForEachConfigLine, Walks) {
  const ConfigRow rows[] = {
      {"plain lines", "a=1\nb=2\n", {"1:a=1", "2:b=2"}},
      {"a last line without its end", "a=1\nb=2", {"1:a=1", "2:b=2"}},
      {"trims blanks around key and value", " \ta \t= 1 2 \t\n", {"1:a=1 2"}},
      {"ends of another system", "a=1\r\nb=2\r\n", {"1:a=1", "2:b=2"}},
      {"counts what it skips", "\n# c=3\n   # d=4\n \nnothing\na=1", {"6:a=1"}},
      {"only the first sign divides", "a=b=c", {"1:a=b=c"}},
      {"a sign within a line is no comment", "a=1 # one", {"1:a=1 # one"}},
      {"an empty value", "a=", {"1:a="}},
      {"an empty key", "=1", {"1:=1"}},
      {"repeated keys, in order", "a=1\na=2", {"1:a=1", "2:a=2"}},
      {"nothing", "", {}},
      {"only ends", "\n\n", {}},
  };
  for (const ConfigRow& row : rows) {
    EXPECT_EQ(walk(row.text), row.expected) << row.rule;
  }
  EXPECT_EQ(walk(std::string_view("a=1\0b\n", 6)), (Lines{std::string("1:a=1\0b", 7)}))
      << "a zero byte is kept";
}

/** A file of the test's own that goes with it. */
class TemporaryFile {
 public:
  explicit TemporaryFile(std::string_view text)
      : path(::testing::TempDir() + "text_file_test_" +
             ::testing::UnitTest::GetInstance()->current_test_info()->name()) {
    std::ofstream(path, std::ios::binary) << text;
  }
  ~TemporaryFile() { std::remove(path.c_str()); }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  const std::string path;
};

TEST(ReadTextFile, GivesTheFileAsItStands) {
  const std::string text("a\r\n\0b", 5);
  EXPECT_EQ(readTextFile(TemporaryFile(text).path), text);
}

TEST(ReadTextFile, AnEmptyFileIsAnEmptyText) {
  EXPECT_EQ(readTextFile(TemporaryFile("").path), "");
}

TEST(ReadTextFile, AMissingFileAndAFolderAreNothing) {
  EXPECT_EQ(readTextFile(::testing::TempDir() + "no/such/file"), std::nullopt);
  EXPECT_EQ(readTextFile(::testing::TempDir()), std::nullopt);
}

}  // namespace
}  // namespace fyn::productionrules
