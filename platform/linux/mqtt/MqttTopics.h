#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace fyn::productionrules {

/** How a message of a topic travels through a broker. */
struct MqttDelivery {
  /** 0: once or not at all, 1: until the broker has acknowledged it. */
  int qos = 1;
  /** Whether the broker keeps the last message for whoever subscribes later. */
  bool retain = false;
};

/** The delivery of `topic` (without the room). */
MqttDelivery mqttDeliveryOf(std::string_view topic);

/** The name of `topic` on the broker: behind the room, when there is one. */
std::string mqttName(const std::string& room, const std::string& topic);

/** The filter that covers `topic` and every topic beneath it. */
std::string mqttFilter(const std::string& room, const std::string& topic);

/** The topic of a broker's name; nothing when the name is not of this room. */
std::optional<std::string> topicOfMqttName(const std::string& room, std::string_view name);

/** Whether a topic can be used on a broker: it begins with '/' and holds no wildcard. */
bool isMqttTopic(std::string_view topic);

}  // namespace fyn::productionrules
