#include "tools/why/MomentTime.h"

#include <regex>

#include "tools/base/UsageError.h"

namespace fyn::productionrules {

std::int64_t momentOf(const std::string& text) {
  static const std::regex form(R"((?:(\d{1,7}):)?(\d{1,9})(?:\.(\d{1,3}))?)");
  std::smatch parts;
  if (!std::regex_match(text, parts, form)) {
    throw UsageError("a time is given as 02:05.133 (minutes and seconds) or 125.133 (seconds), not '" + text +
                     "'");
  }
  const std::int64_t minutes = parts[1].matched ? std::stoll(parts[1]) : 0;
  const std::int64_t milliseconds = std::stoll((parts[3].str() + "000").substr(0, 3));
  return (minutes * 60 + std::stoll(parts[2])) * 1000 + milliseconds;
}

}  // namespace fyn::productionrules
