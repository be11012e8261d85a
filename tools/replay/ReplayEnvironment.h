#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "platform/MemoryPropertyStore.h"
#include "platform/ServiceState.h"
#include "platform/virtual/VirtualTime.h"
#include "tools/replay/ReplayObserver.h"

namespace fyn::productionrules {

/** The service state of a replay: as at the start of a process, with a virtual clock, no properties and no
 * configuration file. */
class ReplayEnvironment {
 public:
  /** Log lines above `logLevel` are neither built nor reported; 0 for none. */
  ReplayEnvironment(ReplayObserver& observer, int logLevel);

  const std::shared_ptr<ServiceState>& state() const { return mState; }
  VirtualTime& time() { return *mTime; }
  MemoryPropertyStore& properties() { return *mProperties; }

  /** Replaces the content of the configuration file. */
  void setConfiguration(std::string text) { *mConfiguration = std::move(text); }

 private:
  const std::shared_ptr<VirtualTime> mTime;
  const std::shared_ptr<MemoryPropertyStore> mProperties = std::make_shared<MemoryPropertyStore>();
  const std::shared_ptr<std::optional<std::string>> mConfiguration =
      std::make_shared<std::optional<std::string>>();
  const std::shared_ptr<ServiceState> mState = std::make_shared<ServiceState>();
};

}  // namespace fyn::productionrules
