#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <thread>

#include "platform/Mutex.h"
#include "platform/PubSub.h"
#include "platform/linux/mqtt/MqttConnection.h"
#include "platform/linux/mqtt/MqttOptions.h"
#include "platform/linux/mqtt/MqttOutage.h"
#include "platform/linux/mqtt/MqttOutbox.h"
#include "platform/linux/mqtt/MqttStatus.h"
#include "platform/linux/mqtt/MqttSubscriptions.h"

namespace fyn::productionrules {

/**
 * A client of an MQTT 5 broker. Its own thread connects, reconnects with back-off and subscribes again, so no
 * operation ever waits for the network. A loss is logged once, the return once with the number of messages
 * that could not be sent: those published without a connection and those that did not fit into the bounded
 * queue. They are not sent later, because a picture or a command of a past situation would be wrong by then;
 * only the last message of a retained topic is, at each connection, because it holds until the next.
 * What the broker had not acknowledged when the connection broke (topics of QoS 1) is sent again, so a
 * subscriber may see it twice. With the health of a service it keeps that service's status at the broker.
 */
class MqttPubSubClient final : public com::quil::pubsub::IPubSubClient, private MqttEvents {
 public:
  /** Throws std::invalid_argument with one clear line when a certificate file cannot be used. */
  explicit MqttPubSubClient(const MqttOptions& options);
  ~MqttPubSubClient() override;
  MqttPubSubClient(const MqttPubSubClient&) = delete;
  MqttPubSubClient& operator=(const MqttPubSubClient&) = delete;

  void publish(const std::string& topic, const std::string& message) override;
  void advertise(const std::string& topic) override;
  void subscribe(const std::string& topic, com::quil::pubsub::IPubSubListener& listener) override;

  /** Gives what is queued half a second to leave, then disconnects. */
  void close() override;

  /**
   * Calls `callback` once, on the client's thread, as soon as the broker has confirmed every subscription.
   */
  void whenSubscribed(std::function<void()> callback);

  /** After `close`: how many messages the broker never took. */
  std::uint64_t lostMessages() const;

 private:
  using TimePoint = std::chrono::steady_clock::time_point;

  // The network thread.
  void run();
  int connect();
  int serveConnection();
  /** Whether a client that closes is done with the connection. */
  bool hasClosed(TimePoint now) PR_REQUIRES(mUse);
  int sendWhatWaits(TimePoint now) PR_REQUIRES(mUse);
  int sendStatus(TimePoint now) PR_REQUIRES(mUse);
  int sendQueued() PR_REQUIRES(mUse);
  int publishStatus(const std::string& document) PR_REQUIRES(mUse);
  /** Whether it had stood. */
  bool connectionEnded(int result);
  void pauseFor(std::chrono::milliseconds pause);

  /** Spares a publishing thread the change to the network thread and back to the processor. False when that
   * thread has to send: it is at work, or there is more than the network takes. */
  bool sendNow();

  // Called by the connection.
  void onConnected(std::size_t receiveMaximum) override;
  void onRefused(const std::string& reason) override { mOutage.noteRefusal(reason); }
  void onMessage(const std::string& name, const std::string& text) override;
  void onSubscribed(int id) override { mSubscriptions.confirm(id); }
  void onPublished(int id) override;

  const MqttOptions mOptions;
  /** Held by the thread that uses the connection: the network thread except while it waits, or one that
   * publishes. */
  mutable Mutex mUse;
  MqttConnection mConnection;
  MqttOutbox mOutbox;
  MqttSubscriptions mSubscriptions;
  std::optional<MqttStatus> mStatus;
  std::atomic<bool> mClosing{false};

  std::set<int> mUnacknowledged PR_GUARDED_BY(mUse);
  std::size_t mReceiveMaximum PR_GUARDED_BY(mUse) = 0;
  bool mConnected PR_GUARDED_BY(mUse) = false;

  // State of the network thread.
  MqttOutage mOutage;
  TimePoint mConnectStart;
  std::optional<TimePoint> mCloseStart;
  bool mSaidDown = false;

  Mutex mJoinMutex;
  std::thread mThread PR_GUARDED_BY(mJoinMutex);
  std::atomic<std::thread::id> mNetworkThread{};
};

}  // namespace fyn::productionrules
