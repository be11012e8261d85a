#include <functional>
#include <memory>

#include "platform/DevicePlatform.h"
#include "platform/ServiceState.h"
#include "platform/android/AndroidLogSink.h"
#include "platform/embedded/InProcessBus.h"
#include "platform/embedded/InProcessCameraProviders.h"
#include "platform/embedded/ThreadDelayedTasks.h"

namespace fyn::productionrules {

// Log and threads are Android's. Bus, camera provider and properties stand inside the process until the
// device's own take their places here.
DevicePlatform buildPlatform() {
  ServiceState::current().setLog(std::make_shared<AndroidLogSink>());
  // Outlives its clients.
  static auto* const bus = new InProcessBus();
  DevicePlatform device;
  device.platform.bus = bus->connect();
  device.platform.providers = std::make_shared<InProcessCameraProviders>();
  device.platform.tasks = std::make_shared<ThreadDelayedTasks>();
  device.whenBusReady = [](const std::function<void()>& callback) { callback(); };
  return device;
}

}  // namespace fyn::productionrules
