#pragma once

#include <memory>
#include <string>

#include "platform/LogSink.h"
#include "platform/virtual/VirtualTime.h"
#include "service/ProductionRuleIPCService.h"

namespace fyn::productionrules::bench {

/** A service whose bus, provider and log only count, in the framing mode under test. One at a time. */
class BenchService {
 public:
  /** `withLog`: log lines of the default level are built, and dropped by the sink. */
  BenchService(FramingMode mode, bool withLog);
  ~BenchService();

  ProductionRuleIPCService& service() { return *mService; }

  /** Moves the virtual clock on by one vision frame. */
  void nextFrame() { mTime.advanceTo(mTime.now() + 33); }

  /** The scene document that was published last. */
  const std::string& lastScene() const;

 private:
  class Bus;
  class NullLog final : public LogSink {
    void write(LogPriority /*priority*/, const char* /*tag*/, const char* /*text*/) override {}
  };

  VirtualTime mTime{1000000, 1700000000000};
  NullLog mLog;
  std::shared_ptr<Bus> mBus;
  std::unique_ptr<ProductionRuleIPCService> mService;
};

}  // namespace fyn::productionrules::bench
