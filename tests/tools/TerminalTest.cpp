#include <gtest/gtest.h>

#include "tools/base/ProgressBar.h"
#include "tools/base/Terminal.h"

namespace fyn::productionrules::testing {
namespace {

struct BarRow {
  std::size_t columns;
  const char* line;
};

TEST(Terminal, AProgressBarStaysOnItsLine) {
  const BarRow rows[] = {
      {100, "play [####################....................] 50 %"},
      {24, "play [#####.....] 50 %"},
      {23, "play 50 %"},
      {1, "play 50 %"},
  };
  for (const BarRow& row : rows) {
    EXPECT_EQ(progressLine("play", 0.5, row.columns), row.line) << row.columns;
  }
  for (std::size_t columns = 24; columns < 120; ++columns) {
    EXPECT_LT(progressLine("play", 1, columns).size(), columns);
  }
}

struct ScreenRow {
  const char* text;
  TerminalSize size;
  const char* drawn;
};

TEST(Terminal, AScreenIsCutToItsSize) {
  const ScreenRow rows[] = {
      {"ab\ncde\n", {80, 24}, "\033[Hab\033[K\r\ncde\033[K\033[J"},
      {"abcdef\n\u00e4\u00f6\u00fc\n", {2, 24}, "\033[Hab\033[K\r\n\u00e4\u00f6\033[K\033[J"},
      {"a\nb\nc\n", {80, 3}, "\033[Ha\033[K\r\nb\033[K\r\nc\033[K\033[J"},
      {"a\nb\nc\nd\n", {80, 3}, "\033[Ha\033[K\r\nb\033[K\r\n... 2 more lines\033[K\033[J"},
      {"a\nb\n", {3, 1}, "\033[H...\033[K\033[J"},
      {"", {80, 24}, "\033[H\033[J"},
  };
  for (const ScreenRow& row : rows) {
    EXPECT_EQ(drawnScreen(row.text, row.size), row.drawn);
  }
}

}  // namespace
}  // namespace fyn::productionrules::testing
