#include "platform/SubscriptionList.h"

#include <algorithm>
#include <set>

namespace fyn::productionrules {

using com::quil::pubsub::IPubSubListener;
using com::quil::pubsub::topicCovers;

bool SubscriptionList::add(const std::string& topic, IPubSubListener& listener) {
  const auto same = [&](const Subscription& known) {
    return known.topic == topic && known.listener == &listener;
  };
  if (std::any_of(mSubscriptions.begin(), mSubscriptions.end(), same)) {
    return false;
  }
  mSubscriptions.push_back({topic, &listener});
  return true;
}

std::vector<IPubSubListener*> SubscriptionList::listenersOf(std::string_view topic) const {
  std::vector<IPubSubListener*> reached;
  for (const Subscription& subscription : mSubscriptions) {
    if (topicCovers(subscription.topic, topic) &&
        std::find(reached.begin(), reached.end(), subscription.listener) == reached.end()) {
      reached.push_back(subscription.listener);
    }
  }
  return reached;
}

std::vector<std::string> SubscriptionList::coveringTopics() const {
  std::set<std::string> topics;
  for (const Subscription& subscription : mSubscriptions) {
    topics.insert(subscription.topic);
  }
  std::vector<std::string> covering;
  for (const std::string& topic : topics) {
    const bool covered = std::any_of(topics.begin(), topics.end(), [&](const std::string& other) {
      return other != topic && topicCovers(other, topic);
    });
    if (!covered) {
      covering.push_back(topic);
    }
  }
  return covering;
}

}  // namespace fyn::productionrules
