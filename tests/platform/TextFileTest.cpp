#include <gtest/gtest.h>
#include <sys/stat.h>

#include <stdexcept>

#include "platform/TextFile.h"
#include "tests/testing/ScratchFolder.h"

namespace fyn::productionrules {
namespace {

using testing::ScratchFolder;

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

using TextFileRead = ::testing::TestWithParam<TextFileReader>;

TEST_P(TextFileRead, GivesTheFileAsItStandsOrNothing) {
  const ScratchFolder folder;
  for (const std::string& text : {std::string("a\r\n\0b", 5), std::string(), std::string(10000, 'x')}) {
    EXPECT_EQ(GetParam()(folder.write("text", text)), text);
  }
  EXPECT_EQ(GetParam()(folder.file("no/such/file")), std::nullopt);
}

INSTANTIATE_TEST_SUITE_P(Readers, TextFileRead, ::testing::Values(readTextFile, readRegularFile));

TEST(ReadTextFile, AFolderIsNothing) {
  EXPECT_EQ(readTextFile(::testing::TempDir()), std::nullopt);
}

std::string refusalOf(const std::string& path) {
  try {
    readRegularFile(path);
  } catch (const std::runtime_error& fault) {
    return fault.what();
  }
  return "";
}

TEST(ReadRegularFile, NeitherWaitsNorFillsTheMemory) {
  const ScratchFolder folder;
  ASSERT_EQ(mkfifo(folder.file("pipe").c_str(), 0600), 0);
  const std::string largest(kLargestRegularFile, 'x');
  EXPECT_EQ(readRegularFile(folder.write("largest", largest)), largest);
  for (const auto& [path, reason] : {std::pair(folder.file("pipe"), "it is not a regular file"),
                                     {folder.file(""), "it is not a regular file"},
                                     {"/dev/zero", "it is not a regular file"},
                                     {folder.write("larger", largest + "x"), "it is larger than 1 MB"}}) {
    EXPECT_EQ(refusalOf(path), path + " is not read: " + reason);
  }
}

}  // namespace
}  // namespace fyn::productionrules
