#pragma once

#include <iosfwd>
#include <memory>

#include "platform/CameraProvider.h"
#include "platform/DelayedTasks.h"
#include "platform/PubSub.h"

namespace fyn::productionrules {

/**
 * What one service is given: its bus client, the camera providers it may find, a way to run work later, and the
 * stream that stands for standard output. What belongs to the whole process (clock, log, properties, files) is
 * in SystemEnvironment.
 */
struct Platform {
  std::shared_ptr<com::quil::pubsub::IPubSubClient> bus;
  std::shared_ptr<ICameraProviders> providers;
  std::shared_ptr<DelayedTasks> tasks;
  std::ostream* standardOutput = nullptr;
};

}  // namespace fyn::productionrules
