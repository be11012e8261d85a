#pragma once

#include <mosquitto.h>

#include <atomic>
#include <chrono>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "platform/SubscriptionList.h"
#include "platform/linux/mqtt/MqttPubSubClient.h"
#include "platform/linux/mqtt/MqttTopics.h"

namespace fyn::productionrules {

/**
 * What stands behind an MqttPubSubClient. Only the network thread touches the MQTT library; the other threads
 * leave messages and subscriptions under `mMutex` and wake it.
 */
class MqttPubSubClient::Session {
 public:
  explicit Session(const MqttOptions& options);
  ~Session();
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  void publish(const std::string& topic, const std::string& message);
  void subscribe(const std::string& topic, com::quil::pubsub::IPubSubListener& listener);
  void close();
  void whenSubscribed(std::function<void()> callback);

 private:
  using TimePoint = std::chrono::steady_clock::time_point;

  struct Message {
    std::string topic;
    std::string text;
  };

  struct FreeMosquitto {
    void operator()(mosquitto* handle) const { mosquitto_destroy(handle); }
  };

  void createHandle();
  void setUpTls();

  // The network thread.
  void run();
  int connect();
  int serveConnection();
  int pollOnce(std::chrono::milliseconds limit);
  int sendQueued();
  int send(const Message& message, const MqttDelivery& delivery, int& id);
  bool isOwn(const mosquitto_property* properties) const;
  int updateSubscriptions();
  bool mayDisconnect();
  void connectionEnded(int result);
  void pauseFor(std::chrono::milliseconds pause);
  void reportReady();

  // Called by the MQTT library, on the network thread.
  void onConnect(int reason, const mosquitto_property* properties);
  void onMessage(const mosquitto_message& message, const mosquitto_property* properties);
  void onSubscribe(int id, int count, const int* granted);
  void onPublish(int id) { mUnacknowledged.erase(id); }

  void wake();

  const MqttOptions mOptions;
  const std::string mIdentity;
  const int mWakeFd;
  std::unique_ptr<mosquitto, FreeMosquitto> mHandle;

  std::mutex mMutex;
  std::deque<Message> mOutbox;
  std::vector<std::string> mWanted;
  std::function<void()> mWhenSubscribed;
  std::uint64_t mUnsent = 0;
  bool mConnected = false;

  // Recursive and held while listeners are called, so that `close` waits for them, unless one of them calls
  // it.
  std::recursive_mutex mDispatchMutex;
  SubscriptionList mSubscriptions;

  std::atomic<bool> mClosing{false};

  // State of the network thread.
  std::set<std::string> mAsked;
  std::set<int> mUnconfirmed;
  std::set<int> mUnacknowledged;
  std::size_t mReceiveMaximum = 0;
  std::string mRefusal;
  bool mOutageSaid = false;
  bool mRefusalSaid = false;
  bool mEverConnected = false;
  TimePoint mConnectStart;
  TimePoint mCloseStart;

  std::mutex mJoinMutex;
  std::thread mThread;
  std::atomic<std::thread::id> mNetworkThread{};
};

}  // namespace fyn::productionrules
