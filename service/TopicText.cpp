#include "service/TopicText.h"

#include <algorithm>

#include "platform/PubSub.h"

namespace fyn::productionrules {

std::string appendRemoteToTopic(std::string_view topic) {
  return com::quil::pubsub::appendSubtopic(topic, "remote");
}

std::vector<std::string> getSubTopics(const std::string& topic) {
  std::vector<std::string> parts;
  std::size_t separator = std::min(topic.find('/', 1), topic.size());
  while (separator < topic.size()) {
    const std::size_t next = std::min(topic.find('/', separator + 1), topic.size());
    parts.push_back(topic.substr(separator + 1, next - separator - 1));
    separator = next;
  }
  return parts;
}

}  // namespace fyn::productionrules
