#include "platform/linux/mqtt/MqttTopics.h"

#include "platform/Topics.h"

namespace fyn::productionrules {

MqttDelivery mqttDeliveryOf(std::string_view topic) {
  for (const Topic& row : topics::kTable) {
    if (row.name == topic) {
      return {row.qos, row.retain};
    }
  }
  return {};
}

std::string mqttName(const std::string& room, const std::string& topic) {
  return room + topic;
}

std::string mqttFilter(const std::string& room, const std::string& topic) {
  // "T/#" matches T itself as well.
  return mqttName(room, topic) + "/#";
}

std::optional<std::string> topicOfMqttName(const std::string& room, std::string_view name) {
  if (name.substr(0, room.size()) != room || name.substr(room.size(), 1) != "/") {
    return std::nullopt;
  }
  return std::string(name.substr(room.size()));
}

bool isMqttTopic(std::string_view topic) {
  return !topic.empty() && topic.front() == '/' && topic.find_first_of("+#") == std::string_view::npos &&
         topic.find('\0') == std::string_view::npos;
}

}  // namespace fyn::productionrules
