#include "platform/linux/mqtt/MqttPubSubClient.h"

#include <mosquitto.h>

#include <algorithm>
#include <exception>
#include <optional>
#include <utility>

#include "platform/ServiceStateScope.h"
#include "platform/VisionSettings.h"
#include "platform/linux/mqtt/MqttTopics.h"

namespace fyn::productionrules {

using com::quil::pubsub::IPubSubListener;
using std::chrono::milliseconds;
using std::chrono::steady_clock;

namespace {

constexpr const char* kTag = "MqttPubSubClient";
constexpr milliseconds kConnectLimit{10000};
constexpr milliseconds kCloseLimit{500};
constexpr milliseconds kPollPeriod{500};
constexpr milliseconds kClosingPollPeriod{20};
// More unacknowledged messages would wait inside the MQTT library and be overtaken by those of QoS 0.
constexpr std::size_t kMostUnacknowledged = 20;
constexpr MqttDelivery kStatusDelivery{1, true};

/** Whether the fault lies in the message and not in the connection. */
bool isRefusedMessage(int result) {
  return result == MOSQ_ERR_INVAL || result == MOSQ_ERR_PAYLOAD_SIZE || result == MOSQ_ERR_MALFORMED_UTF8 ||
         result == MOSQ_ERR_OVERSIZE_PACKET || result == MOSQ_ERR_QOS_NOT_SUPPORTED ||
         result == MOSQ_ERR_RETAIN_NOT_SUPPORTED;
}

}  // namespace

MqttPubSubClient::MqttPubSubClient(const MqttOptions& options)
    : mOptions(options),
      mConnection(options, *this),
      mSubscriptions(options.address.room),
      mOutage(options.address.text()) {
  if (mOptions.health != nullptr) {
    mStatus.emplace(mOptions.health);
  }
  mThread = std::thread(inThisServiceState([this] { run(); }));
}

MqttPubSubClient::~MqttPubSubClient() {
  close();
}

void MqttPubSubClient::publish(const std::string& topic, const std::string& message) {
  if (!isMqttTopic(topic)) {
    PRB_LOGE(kTag, "%s: \"%s\" is no topic, its message is dropped", "publish", topic.c_str());
    return;
  }
  if (!mClosing && mOutbox.put({topic, message, mqttDeliveryOf(topic)}) && !sendNow()) {
    mConnection.wake();
  }
}

bool MqttPubSubClient::sendNow() {
  // A listener that publishes is called by the network thread, under its lock.
  if (mNetworkThread == std::this_thread::get_id() || !mUse.try_lock()) {
    return false;
  }
  bool isSent = false;
  try {
    isSent = mConnected && sendQueued() == MOSQ_ERR_SUCCESS && !mConnection.wantsToWrite();
  } catch (...) {
    mUse.unlock();
    throw;
  }
  mUse.unlock();
  return isSent;
}

// A broker needs no announcement.
void MqttPubSubClient::advertise(const std::string& /*topic*/) {}

void MqttPubSubClient::subscribe(const std::string& topic, IPubSubListener& listener) {
  if (!isMqttTopic(topic)) {
    PRB_LOGE(kTag, "%s: \"%s\" is no topic", "subscribe", topic.c_str());
    return;
  }
  if (mSubscriptions.add(topic, listener)) {
    mConnection.wake();
  }
}

void MqttPubSubClient::close() {
  mClosing = true;
  mSubscriptions.close();
  mConnection.wake();
  if (mNetworkThread != std::this_thread::get_id()) {
    const MutexLock lock(mJoinMutex);
    if (mThread.joinable()) {
      mThread.join();
    }
  }
}

void MqttPubSubClient::whenSubscribed(std::function<void()> callback) {
  mSubscriptions.whenConfirmed(std::move(callback));
  mConnection.wake();
}

void MqttPubSubClient::run() {
  mNetworkThread = std::this_thread::get_id();
  milliseconds pause = mOptions.firstRetry;
  while (!mClosing) {
    int result = connect();
    try {
      result = result == MOSQ_ERR_SUCCESS ? serveConnection() : result;
    } catch (const std::exception& fault) {
      // Out of memory: a new connection begins with empty queues.
      PRB_LOGE(kTag, "%s: %s", "run", fault.what());
      result = MOSQ_ERR_NOMEM;
    }
    if (connectionEnded(result)) {
      pause = mOptions.firstRetry;
    }
    pauseFor(pause);
    pause = std::min(2 * pause, mOptions.lastRetry);
  }
}

int MqttPubSubClient::connect() {
  const MutexLock use(mUse);
  mConnectStart = steady_clock::now();
  return mConnection.connect();
}

int MqttPubSubClient::serveConnection() {
  MutexLock use(mUse);
  mCloseStart.reset();
  mSaidDown = false;
  int result = MOSQ_ERR_SUCCESS;
  while (result == MOSQ_ERR_SUCCESS) {
    const TimePoint now = steady_clock::now();
    if (!mConnected && now - mConnectStart > kConnectLimit) {
      return MOSQ_ERR_KEEPALIVE;
    }
    if (mClosing && hasClosed(now)) {
      return MOSQ_ERR_SUCCESS;
    }
    result = mConnected ? sendWhatWaits(now) : MOSQ_ERR_SUCCESS;
    if (result == MOSQ_ERR_SUCCESS) {
      pollfd socket = mConnection.socketToWatch();
      if (socket.fd < 0) {
        return MOSQ_ERR_NO_CONN;
      }
      use.unlock();
      mConnection.wait(socket, mClosing ? kClosingPollPeriod : kPollPeriod);
      use.lock();
      result = mConnection.transfer(socket);
    }
  }
  return result;
}

// Says goodbye once everything has left; then the broker ends the connection.
bool MqttPubSubClient::hasClosed(TimePoint now) {
  mCloseStart = mCloseStart.value_or(now);
  if (!mConnected || now - *mCloseStart > kCloseLimit) {
    return true;
  }
  if (!mSaidDown && mOutbox.isEmpty() && mUnacknowledged.empty() && !mConnection.wantsToWrite()) {
    mSaidDown = true;
    if (mStatus) {
      publishStatus(MqttStatus::kDown);
    }
    mConnection.disconnect();
  }
  return false;
}

int MqttPubSubClient::sendWhatWaits(TimePoint now) {
  int result = mSubscriptions.update(mConnection);
  result = result == MOSQ_ERR_SUCCESS ? sendStatus(now) : result;
  return result == MOSQ_ERR_SUCCESS ? sendQueued() : result;
}

int MqttPubSubClient::sendStatus(TimePoint now) {
  const auto document = mStatus && !mClosing ? mStatus->due(now) : std::nullopt;
  const int result = document ? publishStatus(*document) : MOSQ_ERR_SUCCESS;
  // A broker that keeps no messages gets none; that is no fault of the connection.
  return isRefusedMessage(result) ? MOSQ_ERR_SUCCESS : result;
}

int MqttPubSubClient::publishStatus(const std::string& document) {
  int id = 0;
  return mConnection.publish(mqttName(mOptions.address.room, MqttStatus::kTopic), document, kStatusDelivery,
                             id);
}

int MqttPubSubClient::sendQueued() {
  while (!mConnection.wantsToWrite() && mUnacknowledged.size() < mReceiveMaximum) {
    const std::optional<MqttMessage> next = mOutbox.take();
    if (!next) {
      break;
    }
    int id = 0;
    const int result =
        mConnection.publish(mqttName(mOptions.address.room, next->topic), next->text, next->delivery, id);
    if (isRefusedMessage(result)) {
      mOutbox.countUnsent();
      PRB_LOGE(kTag, "%s: a message of %zu bytes on %s cannot be sent: %s", "publish", next->text.size(),
               next->topic.c_str(), mosquitto_strerror(result));
      continue;
    }
    if (next->delivery.qos > 0) {
      // Also when the connection broke under it: the MQTT library has it and sends it after the return.
      mUnacknowledged.insert(id);
    } else if (result != MOSQ_ERR_SUCCESS) {
      mOutbox.countUnsent();
    }
    if (result != MOSQ_ERR_SUCCESS) {
      return result;
    }
  }
  return MOSQ_ERR_SUCCESS;
}

std::uint64_t MqttPubSubClient::lostMessages() const {
  const MutexLock use(mUse);
  return mOutbox.lost() + mUnacknowledged.size();
}

void MqttPubSubClient::onPublished(int id) {
  mUse.assertHeld();
  mUnacknowledged.erase(id);
}

void MqttPubSubClient::onConnected(std::size_t receiveMaximum) {
  mUse.assertHeld();
  mReceiveMaximum = std::min(receiveMaximum, kMostUnacknowledged);
  const std::uint64_t unsent = mOutbox.open();
  mConnected = true;
  if (mStatus) {
    mStatus->begin();
    mOptions.health->setBus(true);
  }
  mOutage.sayConnected(unsent);
}

void MqttPubSubClient::onMessage(const std::string& name, const std::string& text) {
  if (const std::optional<std::string> topic = topicOfMqttName(mOptions.address.room, name)) {
    mSubscriptions.deliver(*topic, text);
  }
}

bool MqttPubSubClient::connectionEnded(int result) {
  const MutexLock use(mUse);
  const std::string reason = mConnection.errorText(result);
  mOutbox.shut();
  mSubscriptions.forgetConnection();
  const bool lost = std::exchange(mConnected, false);
  if (mOptions.health != nullptr) {
    mOptions.health->setBus(false);
  }
  if (!mClosing) {
    mOutage.sayEnded(lost, reason);
  }
  return lost;
}

void MqttPubSubClient::pauseFor(milliseconds pause) {
  const TimePoint end = steady_clock::now() + pause;
  while (!mClosing) {
    const auto left = std::chrono::duration_cast<milliseconds>(end - steady_clock::now());
    if (left.count() <= 0) {
      return;
    }
    pollfd nothing{-1, 0, 0};
    mConnection.wait(nothing, left);
  }
}

}  // namespace fyn::productionrules
