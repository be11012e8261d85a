#pragma once

#include <cstddef>
#include <string>

namespace fyn::productionrules {

/** What a broker tells, on the thread that uses the connection. */
class MqttEvents {
 public:
  virtual ~MqttEvents() = default;

  /** `receiveMaximum`: how many unacknowledged messages the broker takes. */
  virtual void onConnected(std::size_t receiveMaximum) = 0;
  /** The broker does not let this client in. */
  virtual void onRefused(const std::string& reason) = 0;
  /** A message of another client; `name` is the topic with its room. */
  virtual void onMessage(const std::string& name, const std::string& text) = 0;
  virtual void onSubscribed(int id) = 0;
  virtual void onPublished(int id) = 0;
};

}  // namespace fyn::productionrules
