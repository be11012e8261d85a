#pragma once

#include <poll.h>

#include <chrono>
#include <memory>
#include <string>

#include "platform/linux/mqtt/MqttEvents.h"
#include "platform/linux/mqtt/MqttOptions.h"
#include "platform/linux/mqtt/MqttTls.h"
#include "platform/linux/mqtt/MqttTopics.h"

struct mosquitto;

namespace fyn::productionrules {

/**
 * One client of the MQTT library and the socket under it. All results are those of the library. One thread at
 * a time uses it; while one is in `wait`, others may, and `wake` it.
 */
class MqttConnection {
 public:
  /** Throws std::invalid_argument with one clear line when a certificate file cannot be used, and
   * std::runtime_error when the library cannot be used at all. */
  MqttConnection(const MqttOptions& options, MqttEvents& events);
  ~MqttConnection();
  MqttConnection(const MqttConnection&) = delete;
  MqttConnection& operator=(const MqttConnection&) = delete;

  /** Looks the broker up and begins to connect. */
  int connect();
  void disconnect();

  /** What to wait for; a negative descriptor without a connection. */
  pollfd socketToWatch() const;

  /** Waits for that at most for `limit`, or until woken, and notes what has come. */
  void wait(pollfd& socket, std::chrono::milliseconds limit);

  /** Handles what has come. */
  int transfer(const pollfd& socket);

  /** Whether the library holds bytes that the network has not taken yet. */
  bool wantsToWrite() const;

  int publish(const std::string& name, const std::string& text, const MqttDelivery& delivery, int& id);
  int subscribe(const std::string& filter, int& id);
  int unsubscribe(const std::string& filter);

  /** Ends the wait under way or else the next one. Called on any thread. */
  void wake();

  /** Why a call failed, for people; says the reason of a TLS fault once. */
  std::string errorText(int result);

 private:
  struct FreeMosquitto {
    void operator()(mosquitto* handle) const;
  };

  struct Callbacks;

  void createHandle();
  void announceLimits();
  void leaveWill();
  int startConnecting();
  void drainWakes();

  const MqttOptions mOptions;
  MqttEvents& mEvents;
  const std::string mIdentity;
  const int mWakeFd;
  MqttTlsFault mTlsFault;
  std::unique_ptr<mosquitto, FreeMosquitto> mHandle;
};

}  // namespace fyn::productionrules
