#include "config/PrConfig.h"

#include <cstdlib>

#include "platform/ServiceState.h"

namespace fyn::productionrules {

const PrConfig PrConfig::DEFAULT{};

const PrConfig& PrConfig::get() {
  return ServiceState::current().part<PrConfig>();
}

void PrConfig::set(const PrConfig& config) {
  ServiceState::current().part<PrConfig>() = config;
}

FynOperatingMode getFynOperatingMode() {
  return PrConfig::get().fynOperatingMode;
}

std::string configurationPath() {
  const char* const path = std::getenv("FYN_CONF_NAME");
  return path != nullptr ? path : "/etc/fyn.conf";
}

}  // namespace fyn::productionrules
