#pragma once

#include <cstddef>
#include <string>

namespace fyn::productionrules {

struct TerminalSize {
  std::size_t columns = 80;
  std::size_t rows = 24;
};

/** Of the terminal behind a file descriptor, now; 80 x 24 when there is none or it does not tell. */
TerminalSize terminalSize(int descriptor);

/**
 * What draws `text` from the upper left corner over whatever is there: lines that are too long are cut, and
 * so many lines as do not fit are counted in the last row.
 */
std::string drawnScreen(const std::string& text, TerminalSize size);

}  // namespace fyn::productionrules
