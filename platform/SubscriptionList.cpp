#include "platform/SubscriptionList.h"

#include <algorithm>

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
  std::vector<std::string> covering;
  for (const Subscription& wanted : mSubscriptions) {
    const bool covered =
        std::any_of(mSubscriptions.begin(), mSubscriptions.end(), [&](const Subscription& other) {
          return other.topic != wanted.topic && topicCovers(other.topic, wanted.topic);
        });
    if (!covered && std::find(covering.begin(), covering.end(), wanted.topic) == covering.end()) {
      covering.push_back(wanted.topic);
    }
  }
  return covering;
}

}  // namespace fyn::productionrules
