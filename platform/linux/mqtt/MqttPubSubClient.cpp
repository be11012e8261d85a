#include "platform/linux/mqtt/MqttPubSubClient.h"

#include <utility>

#include "platform/linux/mqtt/MqttSession.h"

namespace fyn::productionrules {

using com::quil::pubsub::IPubSubListener;

MqttPubSubClient::MqttPubSubClient(const MqttOptions& options)
    : mSession(std::make_unique<Session>(options)) {}

MqttPubSubClient::~MqttPubSubClient() = default;

void MqttPubSubClient::publish(const std::string& topic, const std::string& message) {
  mSession->publish(topic, message);
}

// A broker needs no announcement.
void MqttPubSubClient::advertise(const std::string& /*topic*/) {}

void MqttPubSubClient::subscribe(const std::string& topic, IPubSubListener& listener) {
  mSession->subscribe(topic, listener);
}

void MqttPubSubClient::close() {
  mSession->close();
}

void MqttPubSubClient::whenSubscribed(std::function<void()> callback) {
  mSession->whenSubscribed(std::move(callback));
}

}  // namespace fyn::productionrules
