#pragma once

#include <functional>
#include <iosfwd>
#include <memory>
#include <string>

#include "platform/CameraProvider.h"
#include "platform/DelayedTasks.h"
#include "platform/PubSub.h"
#include "platform/ServiceHealth.h"

namespace fyn::productionrules {

/** Opens the file of a debug dump. An empty function means the file system. */
using DumpOpener = std::function<std::unique_ptr<std::ostream>(const std::string& path)>;

/**
 * What one service is given: its bus client, the camera providers it may find, a way to run work later, and
 * the stream that stands for standard output; and where it notes how it is doing. What belongs to the whole
 * process (clock, log, properties, files) is in ServiceState.
 */
struct Platform {
  std::shared_ptr<com::quil::pubsub::IPubSubClient> bus;
  std::shared_ptr<ICameraProviders> providers;
  std::shared_ptr<DelayedTasks> tasks;
  /** Null for the process's own. */
  std::ostream* standardOutput = nullptr;
  DumpOpener openDump;
  std::shared_ptr<ServiceHealth> health = std::make_shared<ServiceHealth>();
};

}  // namespace fyn::productionrules
