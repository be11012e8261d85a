#include "tools/base/Terminal.h"

#include <sys/ioctl.h>

#include <sstream>
#include <vector>

namespace fyn::productionrules {

namespace {

constexpr const char* kHome = "\033[H";
constexpr const char* kWipeRestOfLine = "\033[K";
constexpr const char* kWipeRestOfScreen = "\033[J";

/** The first `columns` characters of a UTF-8 text. */
std::string cut(const std::string& line, std::size_t columns) {
  std::size_t characters = 0;
  std::size_t end = 0;
  for (; end < line.size(); ++end) {
    const bool begins = (static_cast<unsigned char>(line[end]) & 0xC0U) != 0x80U;
    if (begins && ++characters > columns) {
      break;
    }
  }
  return line.substr(0, end);
}

}  // namespace

TerminalSize terminalSize(int descriptor) {
  TerminalSize size;
  winsize told{};
  if (ioctl(descriptor, TIOCGWINSZ, &told) == 0 && told.ws_col > 0 && told.ws_row > 0) {
    size = {told.ws_col, told.ws_row};
  }
  return size;
}

std::string drawnScreen(const std::string& text, TerminalSize size) {
  std::vector<std::string> lines;
  std::istringstream all(text);
  for (std::string line; std::getline(all, line);) {
    lines.push_back(line);
  }
  if (lines.size() > size.rows) {
    const std::size_t hidden = lines.size() - size.rows + 1;
    lines.resize(size.rows - 1);
    lines.push_back("... " + std::to_string(hidden) + " more lines");
  }
  std::string drawn = kHome;
  for (std::size_t row = 0; row < lines.size(); ++row) {
    drawn += (row == 0 ? "" : "\r\n") + cut(lines[row], size.columns) + kWipeRestOfLine;
  }
  return drawn + kWipeRestOfScreen;
}

}  // namespace fyn::productionrules
