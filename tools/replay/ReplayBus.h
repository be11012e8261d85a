#pragma once

#include <string>
#include <vector>

#include "platform/PubSub.h"
#include "tools/replay/ReplayObserver.h"

namespace fyn::productionrules {

/** The bus client of a replayed service: reports every call and delivers what the recording holds. */
class ReplayBus final : public com::quil::pubsub::IPubSubClient {
 public:
  explicit ReplayBus(ReplayObserver& observer) : mObserver(observer) {}

  void publish(const std::string& topic, const std::string& message) override;
  void advertise(const std::string& topic) override;
  void subscribe(const std::string& topic, com::quil::pubsub::IPubSubListener& listener) override;
  void close() override { mSubscriptions.clear(); }

  /** Hands a message to every listener that has subscribed to it, once. */
  void deliver(const std::string& topic, const std::string& message);

 private:
  struct Subscription {
    std::string topic;
    com::quil::pubsub::IPubSubListener* listener;
  };

  ReplayObserver& mObserver;
  std::vector<Subscription> mSubscriptions;
};

}  // namespace fyn::productionrules
