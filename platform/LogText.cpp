#include "platform/LogText.h"

#include <algorithm>
#include <array>

namespace fyn::productionrules {

namespace {

unsigned char byteAt(std::string_view text, std::size_t index) {
  return index < text.size() ? static_cast<unsigned char>(text[index]) : 0;
}

struct LeadBytes {
  unsigned char first;
  unsigned char last;
  /** Of the byte that follows: a smaller one would be a control character or a longer form than needed. */
  unsigned char leastSecond;
  unsigned char mostSecond;
  std::size_t length;
};
constexpr std::array<LeadBytes, 9> kLeadBytes{{
    {0x20, 0x7e, 0x00, 0xff, 1},
    {0xc2, 0xc2, 0xa0, 0xbf, 2},
    {0xc3, 0xdf, 0x80, 0xbf, 2},
    {0xe0, 0xe0, 0xa0, 0xbf, 3},
    {0xe1, 0xec, 0x80, 0xbf, 3},
    {0xed, 0xed, 0x80, 0x9f, 3},
    {0xee, 0xef, 0x80, 0xbf, 3},
    {0xf0, 0xf0, 0x90, 0xbf, 4},
    {0xf1, 0xf4, 0x80, 0xbf, 4},
}};

/** Bytes of the character at the beginning that can be shown; 0 when none stands there. */
std::size_t shownLength(std::string_view text) {
  const unsigned char lead = byteAt(text, 0);
  for (const LeadBytes& row : kLeadBytes) {
    if (lead < row.first || lead > row.last) {
      continue;
    }
    const unsigned char second = byteAt(text, 1);
    bool isWhole = second >= row.leastSecond && second <= row.mostSecond;
    for (std::size_t i = 2; i < row.length; ++i) {
      isWhole = isWhole && (byteAt(text, i) & 0xc0U) == 0x80U;
    }
    return isWhole ? row.length : 0;
  }
  return 0;
}

std::string escaped(char byte) {
  constexpr std::string_view kNamed = "\n\r\t";
  constexpr std::string_view kNames = "nrt";
  constexpr std::string_view kDigits = "0123456789abcdef";
  if (const std::size_t found = kNamed.find(byte); found != std::string_view::npos) {
    return {'\\', kNames[found]};
  }
  const auto value = static_cast<unsigned char>(byte);
  return {'\\', 'x', kDigits[value >> 4U], kDigits[value & 15U]};
}

}  // namespace

std::string cleanLogText(std::string_view text) {
  text = text.substr(0, text.find_last_not_of('\n') + 1);
  std::string clean;
  clean.reserve(std::min(text.size(), kLongestLogText));
  for (std::size_t place = 0; place < text.size();) {
    const std::size_t shown = shownLength(text.substr(place));
    const std::string piece = shown > 0 ? std::string(text.substr(place, shown)) : escaped(text[place]);
    if (clean.size() + piece.size() > kLongestLogText) {
      return clean + "... (" + std::to_string(text.size()) + " bytes)";
    }
    clean += piece;
    place += std::max<std::size_t>(shown, 1);
  }
  return clean;
}

}  // namespace fyn::productionrules
