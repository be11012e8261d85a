#include "service/ProductionRulesServiceRunner.h"

#include <ostream>

#include "config/PrConfig.h"
#include "service/ProductionRuleIPCService.h"

namespace fyn::productionrules {

void runProductionRulesService(const Platform& platform, const std::string& name, bool loadConfig,
                               const std::function<void(BaseIPCService& service)>& started) {
  if (platform.standardOutput != nullptr) {
    *platform.standardOutput << "productionRulesServiceMain" << std::endl;
  }
  if (loadConfig) {
    PrConfig::load(configurationPath());
  }
  ProductionRuleIPCService service(platform, name);
  if (started) {
    started(service);
  }
  service.run();
}

}  // namespace fyn::productionrules
