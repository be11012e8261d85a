#include "service/entry/HealthText.h"

#include <algorithm>

namespace fyn::productionrules {

std::string HealthText::changeAt(std::uint32_t now, const ServiceHealth::Reading& reading) {
  const std::uint64_t passed = std::max<std::uint32_t>(now - mThen, 1);
  const std::uint64_t perSecond = ((reading.results - mResultsThen) * 1000 + passed / 2) / passed;
  mThen = now;
  mResultsThen = reading.results;
  std::string text = reading.mode + ", " + std::to_string(perSecond) + " vision results a second, " +
                     (reading.provider ? "with" : "without") + " camera provider";
  if (text == mSaid) {
    return {};
  }
  mSaid = text;
  return text;
}

}  // namespace fyn::productionrules
