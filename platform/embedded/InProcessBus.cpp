#include "platform/embedded/InProcessBus.h"

#include <algorithm>

#include "platform/Mutex.h"
#include "platform/SubscriptionList.h"

namespace fyn::productionrules {

using com::quil::pubsub::IPubSubClient;
using com::quil::pubsub::IPubSubListener;

/** The clients of a bus. Recursive, because a listener may publish or subscribe while it is called. */
struct InProcessBus::Registry {
  RecursiveMutex mutex;
  std::vector<Client*> clients PR_GUARDED_BY(mutex);

  bool has(const Client* client) const PR_REQUIRES(mutex) {
    return std::find(clients.begin(), clients.end(), client) != clients.end();
  }
};

class InProcessBus::Client final : public IPubSubClient {
 public:
  explicit Client(std::shared_ptr<Registry> registry) : mRegistry(std::move(registry)) {
    const MutexLock lock(mRegistry->mutex);
    mRegistry->clients.push_back(this);
  }

  ~Client() override { close(); }

  void publish(const std::string& topic, const std::string& message) override {
    const MutexLock lock(mRegistry->mutex);
    if (!mRegistry->has(this)) {
      return;
    }
    // By index on a copy: a listener may open or close clients while it is called.
    const std::vector<Client*> clients = mRegistry->clients;
    for (Client* client : clients) {
      if (client != this && mRegistry->has(client)) {
        client->deliver(topic, message);
      }
    }
  }

  void advertise(const std::string& /*topic*/) override {}

  void subscribe(const std::string& topic, IPubSubListener& listener) override {
    const MutexLock lock(mRegistry->mutex);
    mSubscriptions.add(topic, listener);
  }

  void close() override {
    const MutexLock lock(mRegistry->mutex);
    auto& clients = mRegistry->clients;
    clients.erase(std::remove(clients.begin(), clients.end(), this), clients.end());
    mSubscriptions.clear();
  }

 private:
  void deliver(const std::string& topic, const std::string& message) {
    // By the publisher: all clients share one registry.
    mRegistry->mutex.assertHeld();
    for (IPubSubListener* listener : mSubscriptions.listenersOf(topic)) {
      listener->onMessage(topic, message);
    }
  }

  const std::shared_ptr<Registry> mRegistry;
  SubscriptionList mSubscriptions PR_GUARDED_BY(mRegistry->mutex);
};

InProcessBus::InProcessBus() : mRegistry(std::make_shared<Registry>()) {}

InProcessBus::~InProcessBus() = default;

std::shared_ptr<IPubSubClient> InProcessBus::connect() {
  return std::make_shared<Client>(mRegistry);
}

}  // namespace fyn::productionrules
