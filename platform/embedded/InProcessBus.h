#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/PubSub.h"

namespace fyn::productionrules {

/**
 * A bus inside one process. Clients come from `connect`; a message is delivered on the publisher's thread,
 * before `publish` returns. The bus must outlive its clients.
 */
class InProcessBus {
 public:
  InProcessBus();
  ~InProcessBus();
  InProcessBus(const InProcessBus&) = delete;
  InProcessBus& operator=(const InProcessBus&) = delete;

  std::shared_ptr<com::quil::pubsub::IPubSubClient> connect();

 private:
  class Client;
  struct Registry;
  std::shared_ptr<Registry> mRegistry;
};

}  // namespace fyn::productionrules
