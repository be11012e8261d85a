#include <gtest/gtest.h>

#include "tools/base/ProgressBar.h"
#include "tools/base/Terminal.h"

namespace fyn::productionrules::testing {
namespace {

TEST(Terminal, AProgressBarStaysOnItsLine) {
  const std::pair<std::size_t, const char*> rows[] = {
      {100, "play [####################....................] 50 %"},
      {24, "play [#####.....] 50 %"},
      {23, "play 50 %"},
      {1, "play 50 %"},
  };
  for (const auto& [columns, line] : rows) {
    EXPECT_EQ(progressLine("play", 0.5, columns), line) << columns;
  }
  for (std::size_t columns = 24; columns < 120; ++columns) {
    EXPECT_LT(progressLine("play", 1, columns).size(), columns);
  }
}

TEST(Terminal, AScreenIsCutToItsSize) {
  const std::tuple<const char*, TerminalSize, const char*> rows[] = {
      {"ab\ncde\n", {80, 24}, "\033[Hab\033[K\r\ncde\033[K\033[J"},
      {"abcdef\n\u00e4\u00f6\u00fc\n", {2, 24}, "\033[Hab\033[K\r\n\u00e4\u00f6\033[K\033[J"},
      {"a\nb\nc\n", {80, 3}, "\033[Ha\033[K\r\nb\033[K\r\nc\033[K\033[J"},
      {"a\nb\nc\nd\n", {80, 3}, "\033[Ha\033[K\r\nb\033[K\r\n... 2 more lines\033[K\033[J"},
      {"a\nb\n", {3, 1}, "\033[H...\033[K\033[J"},
      {"", {80, 24}, "\033[H\033[J"},
  };
  for (const auto& [text, size, drawn] : rows) {
    EXPECT_EQ(drawnScreen(text, size), drawn);
  }
}

}  // namespace
}  // namespace fyn::productionrules::testing
