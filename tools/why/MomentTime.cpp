#include "tools/why/MomentTime.h"

#include <regex>

#include "tools/base/UsageError.h"

namespace fyn::productionrules {

std::int64_t momentOf(const std::string& text) {
  static const std::regex form(R"((?:(?:(\d{1,4}):)?(\d{1,7}):)?(\d{1,9})(?:\.(\d{1,3}))?)");
  std::smatch parts;
  if (!std::regex_match(text, parts, form)) {
    throw UsageError("a time is given as 02:05.133 (minutes and seconds) or 125.133 (seconds), not '" + text +
                     "'");
  }
  const auto number = [&parts](std::size_t part) {
    return parts[part].matched ? std::stoll(parts[part]) : 0;
  };
  const std::int64_t milliseconds = std::stoll((parts[4].str() + "000").substr(0, 3));
  return ((number(1) * 60 + number(2)) * 60 + number(3)) * 1000 + milliseconds;
}

}  // namespace fyn::productionrules
