#include "platform/embedded/InProcessBus.h"

#include <algorithm>

#include "platform/SubscriptionList.h"

namespace fyn::productionrules {

using com::quil::pubsub::IPubSubClient;
using com::quil::pubsub::IPubSubListener;

/** The clients of a bus. Recursive, because a listener may publish or subscribe while it is called. */
struct InProcessBus::Registry {
  std::recursive_mutex mutex;
  std::vector<Client*> clients;
};

class InProcessBus::Client final : public IPubSubClient {
 public:
  explicit Client(std::shared_ptr<Registry> registry) : mRegistry(std::move(registry)) {
    const std::lock_guard lock(mRegistry->mutex);
    mRegistry->clients.push_back(this);
  }

  ~Client() override { close(); }

  void publish(const std::string& topic, const std::string& message) override {
    const std::lock_guard lock(mRegistry->mutex);
    if (!isOpen()) {
      return;
    }
    // By index on a copy: a listener may open or close clients while it is called.
    const std::vector<Client*> clients = mRegistry->clients;
    for (Client* client : clients) {
      const auto& open = mRegistry->clients;
      if (client != this && std::find(open.begin(), open.end(), client) != open.end()) {
        client->deliver(topic, message);
      }
    }
  }

  void advertise(const std::string& /*topic*/) override {}

  void subscribe(const std::string& topic, IPubSubListener& listener) override {
    const std::lock_guard lock(mRegistry->mutex);
    mSubscriptions.add(topic, listener);
  }

  void close() override {
    const std::lock_guard lock(mRegistry->mutex);
    auto& clients = mRegistry->clients;
    clients.erase(std::remove(clients.begin(), clients.end(), this), clients.end());
    mSubscriptions.clear();
  }

 private:
  bool isOpen() const {
    const auto& clients = mRegistry->clients;
    return std::find(clients.begin(), clients.end(), this) != clients.end();
  }

  void deliver(const std::string& topic, const std::string& message) {
    for (IPubSubListener* listener : mSubscriptions.listenersOf(topic)) {
      listener->onMessage(topic, message);
    }
  }

  const std::shared_ptr<Registry> mRegistry;
  SubscriptionList mSubscriptions;
};

InProcessBus::InProcessBus() : mRegistry(std::make_shared<Registry>()) {}

InProcessBus::~InProcessBus() = default;

std::shared_ptr<IPubSubClient> InProcessBus::connect() {
  return std::make_shared<Client>(mRegistry);
}

}  // namespace fyn::productionrules
