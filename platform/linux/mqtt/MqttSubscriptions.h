#pragma once

#include <functional>
#include <set>
#include <string>
#include <vector>

#include "platform/Mutex.h"
#include "platform/SubscriptionList.h"

namespace fyn::productionrules {

class MqttConnection;

/** Who listens to what, and what of it the broker has been asked for and has confirmed. */
class MqttSubscriptions {
 public:
  explicit MqttSubscriptions(std::string room) : mRoom(std::move(room)) {}

  /** False when that changes nothing. */
  bool add(const std::string& topic, com::quil::pubsub::IPubSubListener& listener);

  /** Calls `callback` once, on the network thread, as soon as the broker has confirmed everything. */
  void whenConfirmed(std::function<void()> callback);

  /** When it returns no listener is called any more, unless the caller is one of them. */
  void close();

  // The network thread.

  void deliver(const std::string& topic, const std::string& text);

  /** Asks the broker for what is wanted and not yet asked for; a result of the MQTT library. */
  int update(MqttConnection& connection);

  /** The broker has answered the subscription `id`. */
  void confirm(int id);

  /** A new connection begins without subscriptions. */
  void forgetConnection();

 private:
  void reportConfirmed();

  const std::string mRoom;

  // Recursive and held while listeners are called, so that `close` waits for them, unless one of them calls
  // it.
  RecursiveMutex mDispatchMutex;
  SubscriptionList mListeners PR_GUARDED_BY(mDispatchMutex);
  bool mClosed PR_GUARDED_BY(mDispatchMutex) = false;

  Mutex mMutex;
  /** In the order in which the listeners asked. */
  std::vector<std::string> mWanted PR_GUARDED_BY(mMutex);
  std::function<void()> mWhenConfirmed PR_GUARDED_BY(mMutex);

  // State of the network thread.
  std::set<std::string> mAsked;
  std::set<int> mUnconfirmed;
};

}  // namespace fyn::productionrules
