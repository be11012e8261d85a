#pragma once

#include <memory>
#include <string>

#include "platform/ServiceStateScope.h"
#include "platform/virtual/VirtualTime.h"
#include "service/ProductionRuleIPCService.h"

namespace fyn::productionrules::bench {

/** What a room is set to; log lines of the default level are built, and dropped by the sink. */
struct Room {
  FramingMode mode = FramingMode::GroupFraming;
  bool steadyFraming = false;
  bool withLog = false;
};

/** A service whose bus, provider and log only count. Its state is the current
 * one of the thread as long as it lives. */
class BenchService {
 public:
  explicit BenchService(const Room& room);

  ProductionRuleIPCService& service() { return *mService; }

  /** Moves the virtual clock on by one vision frame. */
  void nextFrame() { mTime->advanceTo(mTime->now() + 33); }

  /** The scene document that was published last. */
  const std::string& lastScene() const;

 private:
  class Bus;

  const std::shared_ptr<VirtualTime> mTime = std::make_shared<VirtualTime>(1000000, 1700000000000);
  const ServiceStateScope mScope{std::make_shared<ServiceState>()};
  std::shared_ptr<Bus> mBus;
  std::unique_ptr<ProductionRuleIPCService> mService;
};

}  // namespace fyn::productionrules::bench
