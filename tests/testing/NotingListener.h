#pragma once

#include <algorithm>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "platform/Mutex.h"
#include "platform/PubSub.h"

namespace fyn::productionrules::testing {

/** Notes what it receives as "TOPIC TEXT". */
class NotingListener final : public com::quil::pubsub::IPubSubListener {
 public:
  void onMessage(const std::string& topic, const std::string& message) override {
    {
      const MutexLock lock(mMutex);
      mReceived.push_back(topic + " " + message);
    }
    if (onReceived) {
      onReceived();
    }
  }

  std::vector<std::string> received() const {
    const MutexLock lock(mMutex);
    return mReceived;
  }

  /** What it has received since the last call. */
  std::vector<std::string> take() {
    const MutexLock lock(mMutex);
    return std::exchange(mReceived, {});
  }

  bool has(const std::string& line) const {
    const std::vector<std::string> lines = received();
    return std::find(lines.begin(), lines.end(), line) != lines.end();
  }

  /** Called after each message, where it arrives; set before the first. */
  std::function<void()> onReceived;

 private:
  mutable Mutex mMutex;
  std::vector<std::string> mReceived PR_GUARDED_BY(mMutex);
};

}  // namespace fyn::productionrules::testing
