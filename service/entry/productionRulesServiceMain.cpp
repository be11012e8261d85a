#include <exception>
#include <functional>
#include <memory>
#include <utility>

#include "platform/VisionSettings.h"
#include "platform/linux/PlatformFactory.h"
#include "service/ProductionRulesServiceRunner.h"
#include "service/entry/HostSignals.h"

namespace {

constexpr const char* kTag = "productionRulesServiceMain";

void runOnChosenPlatform(const std::string& name, bool loadConfig) {
  using namespace fyn::productionrules;
  const std::unique_ptr<BuiltPlatform> built = buildPlatform(PlatformOptions::fromEnvironment());
  HostSignals host;
  runProductionRulesService(built->platform(), name, loadConfig, [&](BaseIPCService& service) {
    host.attach(service,
                [&built](std::function<void()> callback) { built->whenBusReady(std::move(callback)); });
  });
}

}  // namespace

/**
 * Runs the service called `name` in the calling thread until its host stops it; see HostSignals. Backends are
 * chosen by the environment, see PlatformOptions. A choice that cannot be used is logged, and the function
 * returns.
 */
extern "C" __attribute__((visibility("default"))) void productionRulesServiceMain(const char* name,
                                                                                  bool loadConfig) {
  try {
    runOnChosenPlatform(name != nullptr ? name : "", loadConfig);
  } catch (const std::exception& fault) {
    // Nothing may be thrown through the C interface.
    PRB_LOGE(kTag, "%s: %s", kTag, fault.what());
  }
}
