#include "platform/linux/MqttTopics.h"

#include <array>

namespace fyn::productionrules {

namespace {

struct Row {
  std::string_view topic;
  MqttDelivery delivery;
};

// A stream at frame rate is worth nothing late; a viewer that joins late is shown the last picture at once.
constexpr std::array<Row, 5> kDeliveries{{{"/ICDOut", {0, false}},
                                          {"/TimerDebug", {0, false}},
                                          {"/PRBOutDebug", {0, false}},
                                          {"/PRBOut", {1, true}},
                                          {"/PeopleCount", {1, true}}}};

}  // namespace

MqttDelivery mqttDeliveryOf(std::string_view topic) {
  for (const Row& row : kDeliveries) {
    if (row.topic == topic) {
      return row.delivery;
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
