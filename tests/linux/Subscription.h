#pragma once

#include <atomic>
#include <chrono>
#include <memory>

#include "platform/linux/mqtt/MqttPubSubClient.h"
#include "tests/linux/Processes.h"

namespace fyn::productionrules::testing {

/** Whether the broker has confirmed all subscriptions of `client`; waits for it. */
inline bool isSubscribed(MqttPubSubClient& client,
                         std::chrono::milliseconds limit = std::chrono::seconds(20)) {
  // Shared, because the callback may come when the test has given up.
  auto settled = std::make_shared<std::atomic<bool>>(false);
  client.whenSubscribed([settled] { *settled = true; });
  return eventually([&] { return settled->load(); }, limit);
}

}  // namespace fyn::productionrules::testing
