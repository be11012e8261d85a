#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>

#include "platform/PubSub.h"
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
};

/**
 * A client of an MQTT 5 broker. Its own thread connects, reconnects with back-off and subscribes again, so no
 * operation ever waits for the network. A loss is logged once, the return once with the number of messages
 * that could not be sent: those published without a connection and those that did not fit into the queue of
 * 1024. They are not sent later, because a picture or a command of a past situation would be wrong by then.
 * What the broker had not acknowledged when the connection broke (topics of QoS 1) is sent again, so a
 * subscriber may see it twice.
 */
class MqttPubSubClient final : public com::quil::pubsub::IPubSubClient {
 public:
  /** Throws std::invalid_argument with one clear line when a certificate file cannot be used. */
  explicit MqttPubSubClient(const MqttOptions& options);
  ~MqttPubSubClient() override;

  void publish(const std::string& topic, const std::string& message) override;
  void advertise(const std::string& topic) override;
  void subscribe(const std::string& topic, com::quil::pubsub::IPubSubListener& listener) override;

  /** Gives what is queued half a second to leave, then disconnects. */
  void close() override;

  /**
   * Calls `callback` once, on the client's thread, as soon as the broker has confirmed every subscription.
   */
  void whenSubscribed(std::function<void()> callback);

 private:
  class Session;
  const std::unique_ptr<Session> mSession;
};

}  // namespace fyn::productionrules
