#include <exception>

#include "platform/DevicePlatform.h"
#include "platform/VisionSettings.h"
#include "service/ProductionRulesServiceRunner.h"
#include "service/entry/HostSignals.h"
#include "service/entry/ServiceMain.h"

namespace {

constexpr const char* kTag = "productionRulesServiceMain";

void runOnChosenPlatform(const std::string& name, bool loadConfig) {
  using namespace fyn::productionrules;
  const DevicePlatform device = buildPlatform();
  HostSignals host;
  runProductionRulesService(device.platform, name, loadConfig,
                            [&](BaseIPCService& service) { host.attach(service, device); });
}

}  // namespace

void productionRulesServiceMain(const char* name, bool loadConfig) {
  try {
    runOnChosenPlatform(name != nullptr ? name : "", loadConfig);
  } catch (const std::exception& fault) {
    // Nothing may be thrown through the C interface.
    PRB_LOGE(kTag, "%s: %s", kTag, fault.what());
  }
}
