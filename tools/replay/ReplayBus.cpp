#include "tools/replay/ReplayBus.h"

#include <algorithm>

namespace fyn::productionrules {

using com::quil::pubsub::IPubSubListener;

void ReplayBus::publish(const std::string& topic, const std::string& message) {
  mObserver.onPublish(topic, message);
}

void ReplayBus::advertise(const std::string& topic) {
  mObserver.onAdvertise(topic);
}

void ReplayBus::subscribe(const std::string& topic, IPubSubListener& listener) {
  mObserver.onSubscribe(topic);
  mSubscriptions.push_back({topic, &listener});
}

void ReplayBus::deliver(const std::string& topic, const std::string& message) {
  std::vector<IPubSubListener*> reached;
  for (const Subscription& subscription : mSubscriptions) {
    if (com::quil::pubsub::topicCovers(subscription.topic, topic) &&
        std::find(reached.begin(), reached.end(), subscription.listener) == reached.end()) {
      reached.push_back(subscription.listener);
    }
  }
  for (IPubSubListener* listener : reached) {
    listener->onMessage(topic, message);
  }
}

}  // namespace fyn::productionrules
