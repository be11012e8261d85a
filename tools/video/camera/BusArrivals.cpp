#include "tools/video/camera/BusArrivals.h"

#include "platform/Topics.h"

namespace fyn::productionrules::video {

BusArrivals::BusArrivals(const PlatformOptions& platform, Inbox& inbox, StopSignals& stop)
    : mInbox(inbox), mBus(platform) {
  mBus.client().subscribe(std::string(topics::kVisionResult), *this);
  mBus.client().subscribe(std::string(topics::kScene), *this);
  mBus.waitUntilReady(stop);
}

void BusArrivals::onMessage(const std::string& topic, const std::string& message) {
  if (topic == topics::kVisionResult) {
    mInbox.put({Arrival::Kind::visionResult, message});
  } else if (topic == topics::kScene) {
    mInbox.put({Arrival::Kind::sceneFromBus, message});
  }
}

}  // namespace fyn::productionrules::video
