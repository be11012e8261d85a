#pragma once

#include <cstdint>
#include <string>

#include "platform/ServiceHealth.h"

namespace fyn::productionrules {

/** How the service is doing, in a line for whoever looks at its process. */
class HealthText {
 public:
  /** `start`: milliseconds as below, from when on vision results are counted. */
  explicit HealthText(std::uint32_t start) : mThen(start) {}

  /** The line that fits `now` (milliseconds, may wrap); the rate is that since the last call. Empty when
   * nothing has changed. */
  std::string changeAt(std::uint32_t now, const ServiceHealth::Reading& reading);

 private:
  std::string mSaid;
  std::uint32_t mThen;
  std::uint64_t mResultsThen = 0;
};

}  // namespace fyn::productionrules
