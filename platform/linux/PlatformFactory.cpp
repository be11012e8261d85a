#include "platform/linux/PlatformFactory.h"

#include <iostream>
#include <utility>
#include <vector>

#include "platform/Mutex.h"
#include "platform/SystemEnvironment.h"
#include "platform/embedded/ThreadDelayedTasks.h"
#include "platform/linux/BackendTables.h"

namespace fyn::productionrules {

namespace {

/** For what the whole process reads: never destroyed, because a detached thread may read it while the process
 * ends. */
template <typename Object>
Object* keep(std::shared_ptr<Object> object) {
  static Mutex mutex;
  static auto* const kept = new std::vector<std::shared_ptr<Object>>();
  const MutexLock lock(mutex);
  kept->push_back(std::move(object));
  return kept->back().get();
}

}  // namespace

DevicePlatform buildPlatform(const PlatformOptions& options) {
  options.validate();
  SystemEnvironment::setLog(keep(logBackend(options.log).make(options)));
  SystemEnvironment::setProperties(keep(propertiesBackend(options.properties).make(options)));
  BuiltBus bus = busBackend(options.bus).make(options);
  DevicePlatform device;
  device.platform.bus = std::move(bus.client);
  device.platform.providers = providersBackend(options.provider).make(options);
  device.platform.tasks = std::make_shared<ThreadDelayedTasks>();
  device.platform.standardOutput = &std::cout;
  device.whenBusReady = std::move(bus.whenReady);
  return device;
}

DevicePlatform buildPlatform() {
  return buildPlatform(PlatformOptions::fromEnvironment());
}

}  // namespace fyn::productionrules
