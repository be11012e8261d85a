#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/PubSub.h"

namespace fyn::productionrules {

/** Which listener of a bus client wants which topic. Its user locks. */
class SubscriptionList {
 public:
  /** False when the same subscription stands already. */
  bool add(const std::string& topic, com::quil::pubsub::IPubSubListener& listener);

  /** The listeners of a message of `topic`, each once, in the order of their first subscription. */
  std::vector<com::quil::pubsub::IPubSubListener*> listenersOf(std::string_view topic) const;

  /**
   * The subscribed topics that no other one covers, in the order of their first subscription: the least that
   * a client must ask a broker for, and all that it may ask for when the broker delivers once per matching
   * subscription.
   */
  std::vector<std::string> coveringTopics() const;

  void clear() { mSubscriptions.clear(); }

 private:
  struct Subscription {
    std::string topic;
    com::quil::pubsub::IPubSubListener* listener;
  };
  std::vector<Subscription> mSubscriptions;
};

}  // namespace fyn::productionrules
