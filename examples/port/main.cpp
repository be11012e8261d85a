// A port: the service on the bus, clock, properties and camera provider of another device.
#include <sys/signalfd.h>

#include <csignal>
#include <cstdlib>

#include "DatagramBus.h"
#include "DeviceClock.h"
#include "FolderProperties.h"
#include "SocketCamera.h"
#include "platform/DevicePlatform.h"
#include "platform/ServiceState.h"
#include "platform/embedded/ThreadDelayedTasks.h"
#include "service/entry/ServiceMain.h"

namespace {

const char* folderFrom(const char* variable) {
  const char* const folder = std::getenv(variable);
  if (folder == nullptr) {
    throw std::invalid_argument(std::string(variable) + " names no folder");
  }
  return folder;
}

/** Becomes readable when the process is to end. */
int endDescriptor() {
  sigset_t ends;
  sigemptyset(&ends);
  sigaddset(&ends, SIGTERM);
  sigaddset(&ends, SIGINT);
  // Before any thread starts, so that none of them takes the signals.
  pthread_sigmask(SIG_BLOCK, &ends, nullptr);
  return signalfd(-1, &ends, SFD_CLOEXEC);
}

}  // namespace

namespace fyn::productionrules {

DevicePlatform buildPlatform() {
  const std::string bus = folderFrom("DEVICE_BUS");
  ServiceState::current().setClock(std::make_shared<DeviceClock>());
  ServiceState::current().setProperties(
      std::make_shared<FolderProperties>(folderFrom("DEVICE_LASTING"), folderFrom("DEVICE_PASSING")));
  DevicePlatform device;
  device.platform.bus = std::make_shared<DatagramBus>(bus);
  device.platform.providers = std::make_shared<SocketCameras>(bus);
  device.platform.tasks = std::make_shared<ThreadDelayedTasks>();
  device.whenBusReady = [](const std::function<void()>& callback) { callback(); };
  return device;
}

}  // namespace fyn::productionrules

int main() {
  setenv("PRB_STOP_FD", std::to_string(endDescriptor()).c_str(), 1);
  productionRulesServiceMain("port", true);
}
