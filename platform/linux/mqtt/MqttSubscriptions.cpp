#include "platform/linux/mqtt/MqttSubscriptions.h"

#include <mosquitto.h>

#include <algorithm>
#include <utility>

#include "platform/linux/mqtt/MqttConnection.h"
#include "platform/linux/mqtt/MqttTopics.h"

namespace fyn::productionrules {

using com::quil::pubsub::IPubSubListener;

bool MqttSubscriptions::add(const std::string& topic, IPubSubListener& listener) {
  const MutexLock dispatchLock(mDispatchMutex);
  if (mClosed || !mListeners.add(topic, listener)) {
    return false;
  }
  const MutexLock lock(mMutex);
  mWanted = mListeners.coveringTopics();
  return true;
}

void MqttSubscriptions::whenConfirmed(std::function<void()> callback) {
  const MutexLock lock(mMutex);
  mWhenConfirmed = std::move(callback);
}

void MqttSubscriptions::close() {
  const MutexLock lock(mDispatchMutex);
  mClosed = true;
  mListeners.clear();
}

void MqttSubscriptions::deliver(const std::string& topic, const std::string& text) {
  const MutexLock lock(mDispatchMutex);
  for (IPubSubListener* listener : mListeners.listenersOf(topic)) {
    listener->onMessage(topic, text);
  }
}

int MqttSubscriptions::update(MqttConnection& connection) {
  std::vector<std::string> wanted;
  {
    const MutexLock lock(mMutex);
    wanted = mWanted;
  }
  // First without the topics that a new one covers: two filters over one topic would deliver twice.
  int result = MOSQ_ERR_SUCCESS;
  for (auto asked = mAsked.begin(); asked != mAsked.end() && result == MOSQ_ERR_SUCCESS;) {
    if (std::find(wanted.begin(), wanted.end(), *asked) != wanted.end()) {
      ++asked;
      continue;
    }
    result = connection.unsubscribe(mqttFilter(mRoom, *asked));
    asked = mAsked.erase(asked);
  }
  // In the listeners' order: retained messages come in that of the subscriptions.
  for (auto topic = wanted.begin(); topic != wanted.end() && result == MOSQ_ERR_SUCCESS; ++topic) {
    if (!mAsked.insert(*topic).second) {
      continue;
    }
    int id = 0;
    result = connection.subscribe(mqttFilter(mRoom, *topic), id);
    mUnconfirmed.insert(id);
  }
  reportConfirmed();
  return result;
}

void MqttSubscriptions::confirm(int id) {
  mUnconfirmed.erase(id);
  reportConfirmed();
}

void MqttSubscriptions::forgetConnection() {
  mAsked.clear();
  mUnconfirmed.clear();
}

void MqttSubscriptions::reportConfirmed() {
  std::function<void()> callback;
  {
    const MutexLock lock(mMutex);
    if (mUnconfirmed.empty() && mAsked.size() == mWanted.size()) {
      callback = std::exchange(mWhenConfirmed, nullptr);
    }
  }
  if (callback) {
    callback();
  }
}

}  // namespace fyn::productionrules
