#pragma once

#include <algorithm>
#include <mutex>
#include <string>
#include <vector>

#include "platform/PubSub.h"

namespace fyn::productionrules::testing {

/** Notes what it receives as "TOPIC TEXT". */
class NotingListener final : public com::quil::pubsub::IPubSubListener {
 public:
  void onMessage(const std::string& topic, const std::string& message) override {
    const std::lock_guard lock(mMutex);
    mReceived.push_back(topic + " " + message);
  }

  std::vector<std::string> received() const {
    const std::lock_guard lock(mMutex);
    return mReceived;
  }

  bool has(const std::string& line) const {
    const std::vector<std::string> lines = received();
    return std::find(lines.begin(), lines.end(), line) != lines.end();
  }

 private:
  mutable std::mutex mMutex;
  std::vector<std::string> mReceived;
};

}  // namespace fyn::productionrules::testing
