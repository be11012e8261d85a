#include "platform/linux/PlatformFactory.h"

#include <iostream>
#include <utility>

#include "platform/ServiceState.h"
#include "platform/embedded/ThreadDelayedTasks.h"
#include "platform/linux/BackendTables.h"

namespace fyn::productionrules {

namespace {

DevicePlatform build(const PlatformOptions& options, const std::shared_ptr<ServiceHealth>& health) {
  options.validate();
  ServiceState::current().setLog(logBackend(options.log).make(options));
  ServiceState::current().setProperties(propertiesBackend(options.properties).make(options));
  BuiltBus bus = busBackend(options.bus).make(options, health);
  DevicePlatform device;
  device.platform.bus = std::move(bus.client);
  device.platform.providers = providersBackend(options.provider).make(options);
  device.platform.tasks = std::make_shared<ThreadDelayedTasks>();
  device.platform.standardOutput = &std::cout;
  device.whenBusReady = std::move(bus.whenReady);
  device.lostMessages = std::move(bus.lostMessages);
  if (health != nullptr) {
    device.metrics = metricsBackend(options.metrics).make(options, health);
  }
  return device;
}

}  // namespace

DevicePlatform buildPlatform(const PlatformOptions& options) {
  return build(options, nullptr);
}

DevicePlatform buildPlatform() {
  const auto health = std::make_shared<ServiceHealth>();
  DevicePlatform device = build(PlatformOptions::fromEnvironment(), health);
  device.platform.health = health;
  return device;
}

}  // namespace fyn::productionrules
