#include "platform/Ticks.h"

#include "platform/ServiceState.h"

namespace fyn::productionrules {

std::uint32_t GetTicks() {
  return static_cast<std::uint32_t>(ServiceState::current().clock().monotonicMs().value_or(0));
}

std::int64_t getWallTs64() {
  return ServiceState::current().clock().wallMs();
}

}  // namespace fyn::productionrules
