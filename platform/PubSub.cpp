#include "platform/PubSub.h"

namespace com::quil::pubsub {

std::string appendSubtopic(std::string_view topic, std::string_view sub) {
  std::string result;
  result.reserve(topic.size() + 1 + sub.size());
  result.append(topic).append(1, '/').append(sub);
  return result;
}

bool topicCovers(std::string_view subscribed, std::string_view topic) {
  return topic.substr(0, subscribed.size()) == subscribed &&
         (topic.size() == subscribed.size() || topic[subscribed.size()] == '/');
}

}  // namespace com::quil::pubsub
