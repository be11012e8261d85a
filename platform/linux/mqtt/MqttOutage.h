#pragma once

#include <cstdint>
#include <string>
#include <utility>

namespace fyn::productionrules {

/** Tells the log of the connections to a broker: a loss, a refusal meanwhile and the return, once each. Used
 * by one thread. */
class MqttOutage {
 public:
  explicit MqttOutage(std::string address) : mAddress(std::move(address)) {}

  /** The broker does not let this client in; the attempt is about to end. */
  void noteRefusal(const std::string& reason) { mRefusal = reason; }

  /** The connection stands; `unsent` messages could not be sent before. */
  void sayConnected(std::uint64_t unsent);

  /** An attempt has ended or, when `wasConnected`, a connection: for `reason`, unless it was refused. */
  void sayEnded(bool wasConnected, const std::string& reason);

 private:
  const std::string mAddress;
  std::string mRefusal;
  bool mEverConnected = false;
  bool mOutageSaid = false;
  bool mRefusalSaid = false;
};

}  // namespace fyn::productionrules
