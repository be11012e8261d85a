#include "platform/linux/mqtt/MqttOutage.h"

#include <cinttypes>

#include "platform/VisionSettings.h"

namespace fyn::productionrules {

namespace {
constexpr const char* kClientTag = "MqttPubSubClient";
}

void MqttOutage::sayConnected(std::uint64_t unsent) {
  mOutageSaid = false;
  mRefusalSaid = false;
  const bool again = std::exchange(mEverConnected, true);
  if (again || unsent > 0) {
    PRB_LOGI(kClientTag, "%s to %s, %" PRIu64 " messages could not be sent",
             again ? "connected again" : "connected", mAddress.c_str(), unsent);
  } else {
    PRB_LOGI(kClientTag, "connected to %s", mAddress.c_str());
  }
}

void MqttOutage::sayEnded(bool wasConnected, const std::string& reason) {
  const std::string refusal = std::exchange(mRefusal, "");
  // A refusal needs a person, so it is said even if the outage began otherwise.
  const bool outageKnown = std::exchange(mOutageSaid, true);
  const bool refusalKnown = refusal.empty() || std::exchange(mRefusalSaid, true);
  if (!(outageKnown && refusalKnown)) {
    PRB_LOGW(kClientTag, "%s %s (%s), trying on",
             wasConnected ? "lost the connection to" : "cannot connect to", mAddress.c_str(),
             refusal.empty() ? reason.c_str() : refusal.c_str());
  }
}

}  // namespace fyn::productionrules
