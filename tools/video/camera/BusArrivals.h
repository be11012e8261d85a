#pragma once

#include <string>

#include "tools/base/StopSignals.h"
#include "tools/live/LiveBus.h"
#include "tools/video/camera/Inbox.h"

namespace fyn::productionrules::video {

/** Puts what the programs on the bus say into the inbox, as long as it lives. */
class BusArrivals final : private com::quil::pubsub::IPubSubListener {
 public:
  /** Waits for the bus; raises std::runtime_error when it does not answer. */
  BusArrivals(const PlatformOptions& platform, Inbox& inbox, StopSignals& stop);

 private:
  void onMessage(const std::string& topic, const std::string& message) override;

  Inbox& mInbox;
  /** Goes first, and ends the deliveries. */
  LiveBus mBus;
};

}  // namespace fyn::productionrules::video
