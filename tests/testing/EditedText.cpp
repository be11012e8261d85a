#include "tests/testing/EditedText.h"

#include <cstddef>
#include <iterator>
#include <sstream>
#include <vector>

namespace fyn::productionrules::testing {

std::string editedText(std::string text, std::mt19937& random) {
  static const std::vector<std::string> kPieces = [] {
    std::istringstream words(
        R"(0 -1 1e3 1.5 4294967297 9223372036854775808 true null "" \ { } [ ] , : " {} [] [3])"
        R"( "id": "camId":2, "qfactor":7, "fynId":1, "fynCamId":1, )"
        "\xC3");
    std::vector<std::string> pieces{std::istream_iterator<std::string>(words), {}};
    pieces.emplace_back(" ");
    return pieces;
  }();
  const auto upTo = [&random](std::size_t limit) { return static_cast<std::size_t>(random()) % limit; };
  for (std::size_t edits = 1 + upTo(3); edits > 0; --edits) {
    const std::size_t at = upTo(text.size());
    switch (upTo(4)) {
      case 0:
        text.erase(at, 1 + upTo(8));
        break;
      case 1:
        text.insert(at, kPieces[upTo(kPieces.size())]);
        break;
      case 2:
        text.replace(at, 1 + upTo(3), kPieces[upTo(kPieces.size())]);
        break;
      // A number or a literal gives way to another.
      default: {
        const std::size_t from = text.find(':', at);
        if (from != std::string::npos) {
          text.replace(from + 1, text.find_first_of(",}]", from) - from - 1, kPieces[upTo(kPieces.size())]);
        }
      }
    }
    if (text.empty()) {
      break;
    }
  }
  return text;
}

}  // namespace fyn::productionrules::testing
