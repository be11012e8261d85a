#pragma once

#include "platform/Clock.h"

namespace fyn::productionrules {

/** The clock of the machine itself. */
class SteadyClock final : public Clock {
 public:
  std::optional<std::uint64_t> monotonicMs() const override;
  std::int64_t wallMs() const override;
};

}  // namespace fyn::productionrules
