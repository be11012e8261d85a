#include "platform/Backends.h"
#include "platform/linux/PlatformOptions.h"
#include "platform/linux/mqtt/MqttPubSubClient.h"

namespace fyn::productionrules {

const BusBackend::Maker kMakeMqttBus = [](const PlatformOptions& options,
                                          const std::shared_ptr<ServiceHealth>& health) -> BuiltBus {
  MqttOptions mqtt;
  mqtt.address = parseBusAddress(options.bus);
  mqtt.user = options.mqttUser;
  mqtt.password = options.password();
  mqtt.caFile = options.mqttCaFile;
  mqtt.certificateFile = options.mqttCertificateFile;
  mqtt.keyFile = options.mqttKeyFile;
  mqtt.health = health;
  const auto client = std::make_shared<MqttPubSubClient>(mqtt);
  return {client, [client](std::function<void()> callback) { client->whenSubscribed(std::move(callback)); },
          [client] { return client->lostMessages(); }};
};

}  // namespace fyn::productionrules
