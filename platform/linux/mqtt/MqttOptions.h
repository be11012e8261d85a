#pragma once

#include <chrono>
#include <memory>
#include <string>

#include "platform/ServiceHealth.h"
#include "platform/linux/BusAddress.h"

namespace fyn::productionrules {

struct MqttOptions {
  BusAddress address;
  /** Empty for a broker that lets anyone in. */
  std::string user;
  std::string password;
  /** Certificate authorities for mqtts, a PEM file; empty for those of the machine. */
  std::string caFile;
  /** Certificate and key of this client, PEM files; both or none. */
  std::string certificateFile;
  std::string keyFile;
  /** Pause before the first attempt to reconnect; it doubles with each failed one up to `lastRetry`. */
  std::chrono::milliseconds firstRetry{200};
  std::chrono::milliseconds lastRetry{5000};
  /** Where the connection is noted, and what the broker tells of the service; null for a client that is none.
   */
  std::shared_ptr<ServiceHealth> health;
};

}  // namespace fyn::productionrules
