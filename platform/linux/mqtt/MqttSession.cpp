#include "platform/linux/mqtt/MqttSession.h"

#include <mqtt_protocol.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <optional>
#include <random>
#include <stdexcept>
#include <utility>

#include "platform/VisionSettings.h"
#include "platform/linux/mqtt/MqttTopics.h"

namespace fyn::productionrules {

using com::quil::pubsub::IPubSubListener;
using std::chrono::milliseconds;
using std::chrono::steady_clock;

namespace {

constexpr const char* kTag = "MqttPubSubClient";
constexpr int kKeepAliveSeconds = 10;
constexpr milliseconds kConnectLimit{10000};
constexpr milliseconds kCloseLimit{500};
constexpr milliseconds kPollPeriod{500};
constexpr milliseconds kClosingPollPeriod{20};
constexpr std::size_t kOutboxLimit = 1024;
// What a broker grants that states nothing else; more unacknowledged messages would wait inside the MQTT
// library and be overtaken by those of QoS 0.
constexpr std::size_t kDefaultReceiveMaximum = 20;
constexpr int kFailureReasons = 0x80;
// A broker may show a retained message to its own publisher in spite of no-local, so those carry the
// publisher.
constexpr const char* kPublisherProperty = "publisher";

std::string errorText(int result) {
  return result == MOSQ_ERR_ERRNO ? std::strerror(errno) : mosquitto_strerror(result);
}

std::string newIdentity() {
  std::random_device random;
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "prb-%08x%08x", random(), random());
  return text.data();
}

/** Whether the fault lies in the message and not in the connection. */
bool isRefusedMessage(int result) {
  return result == MOSQ_ERR_INVAL || result == MOSQ_ERR_PAYLOAD_SIZE || result == MOSQ_ERR_MALFORMED_UTF8 ||
         result == MOSQ_ERR_OVERSIZE_PACKET || result == MOSQ_ERR_QOS_NOT_SUPPORTED ||
         result == MOSQ_ERR_RETAIN_NOT_SUPPORTED;
}

void requireReadable(const std::string& file, const char* what) {
  if (!file.empty() && !std::ifstream(file)) {
    throw std::invalid_argument(std::string(what) + " \"" + file + "\" cannot be read");
  }
}

}  // namespace

MqttPubSubClient::Session::Session(const MqttOptions& options)
    : mOptions(options), mIdentity(newIdentity()), mWakeFd(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
  static const int initialised = mosquitto_lib_init();
  if (initialised != MOSQ_ERR_SUCCESS || mWakeFd < 0) {
    throw std::runtime_error("the MQTT library cannot be started");
  }
  try {
    createHandle();
  } catch (...) {
    ::close(mWakeFd);
    throw;
  }
  mThread = std::thread([this] { run(); });
  mNetworkThread = mThread.get_id();
}

MqttPubSubClient::Session::~Session() {
  close();
  ::close(mWakeFd);
}

void MqttPubSubClient::Session::createHandle() {
  mHandle.reset(mosquitto_new(mIdentity.c_str(), true, this));
  if (!mHandle) {
    throw std::runtime_error("the MQTT library is out of memory");
  }
  mosquitto* const handle = mHandle.get();
  mosquitto_int_option(handle, MOSQ_OPT_PROTOCOL_VERSION, MQTT_PROTOCOL_V5);
  mosquitto_int_option(handle, MOSQ_OPT_TCP_NODELAY, 1);
  if (!mOptions.user.empty()) {
    mosquitto_username_pw_set(handle, mOptions.user.c_str(),
                              mOptions.password.empty() ? nullptr : mOptions.password.c_str());
  }
  if (mOptions.address.tls) {
    setUpTls();
  }
  mosquitto_connect_v5_callback_set(
      handle, [](mosquitto*, void* self, int reason, int /*flags*/, const mosquitto_property* properties) {
        static_cast<Session*>(self)->onConnect(reason, properties);
      });
  mosquitto_message_v5_callback_set(handle, [](mosquitto*, void* self, const mosquitto_message* message,
                                               const mosquitto_property* properties) {
    static_cast<Session*>(self)->onMessage(*message, properties);
  });
  mosquitto_subscribe_callback_set(handle, [](mosquitto*, void* self, int id, int count, const int* granted) {
    static_cast<Session*>(self)->onSubscribe(id, count, granted);
  });
  mosquitto_publish_callback_set(
      handle, [](mosquitto*, void* self, int id) { static_cast<Session*>(self)->onPublish(id); });
}

void MqttPubSubClient::Session::setUpTls() {
  requireReadable(mOptions.caFile, "certificate authority file");
  requireReadable(mOptions.certificateFile, "client certificate file");
  requireReadable(mOptions.keyFile, "client key file");
  if (mOptions.certificateFile.empty() != mOptions.keyFile.empty()) {
    throw std::invalid_argument("a client certificate needs both the certificate file and the key file");
  }
  const auto pathOrNull = [](const std::string& path) { return path.empty() ? nullptr : path.c_str(); };
  const char* const machineAuthorities = mOptions.caFile.empty() ? "/etc/ssl/certs" : nullptr;
  const int result =
      mosquitto_tls_set(mHandle.get(), pathOrNull(mOptions.caFile), machineAuthorities,
                        pathOrNull(mOptions.certificateFile), pathOrNull(mOptions.keyFile), nullptr);
  if (result != MOSQ_ERR_SUCCESS) {
    throw std::invalid_argument(std::string("TLS cannot be set up: ") + mosquitto_strerror(result));
  }
}

void MqttPubSubClient::Session::publish(const std::string& topic, const std::string& message) {
  if (!isMqttTopic(topic)) {
    PRB_LOGE(kTag, "%s: \"%s\" is no topic, its message is dropped", "publish", topic.c_str());
    return;
  }
  {
    const std::lock_guard lock(mMutex);
    if (mClosing) {
      return;
    }
    if (!mConnected || mOutbox.size() >= kOutboxLimit) {
      ++mUnsent;
      return;
    }
    mOutbox.push_back({topic, message});
  }
  wake();
}

void MqttPubSubClient::Session::subscribe(const std::string& topic, IPubSubListener& listener) {
  if (!isMqttTopic(topic)) {
    PRB_LOGE(kTag, "%s: \"%s\" is no topic", "subscribe", topic.c_str());
    return;
  }
  {
    const std::lock_guard dispatchLock(mDispatchMutex);
    if (mClosing || !mSubscriptions.add(topic, listener)) {
      return;
    }
    const std::lock_guard lock(mMutex);
    mWanted = mSubscriptions.coveringTopics();
  }
  wake();
}

void MqttPubSubClient::Session::close() {
  mClosing = true;
  {
    const std::lock_guard lock(mDispatchMutex);
    mSubscriptions.clear();
  }
  wake();
  if (mNetworkThread != std::this_thread::get_id()) {
    const std::lock_guard lock(mJoinMutex);
    if (mThread.joinable()) {
      mThread.join();
    }
  }
}

void MqttPubSubClient::Session::whenSubscribed(std::function<void()> callback) {
  {
    const std::lock_guard lock(mMutex);
    mWhenSubscribed = std::move(callback);
  }
  wake();
}

void MqttPubSubClient::Session::wake() {
  const std::uint64_t one = 1;
  // A full counter wakes as well.
  [[maybe_unused]] const ssize_t written = write(mWakeFd, &one, sizeof one);
}

void MqttPubSubClient::Session::run() {
  milliseconds pause = mOptions.firstRetry;
  while (!mClosing) {
    mConnectStart = steady_clock::now();
    int result = connect();
    if (result == MOSQ_ERR_SUCCESS) {
      result = serveConnection();
    }
    const bool wasConnected = mConnected;
    connectionEnded(result);
    if (wasConnected) {
      pause = mOptions.firstRetry;
    }
    pauseFor(pause);
    pause = std::min(2 * pause, mOptions.lastRetry);
  }
}

int MqttPubSubClient::Session::connect() {
  // The MQTT library sets up TLS for the whole process within the first connect, without a lock of its own.
  static std::mutex tlsMutex;
  std::unique_lock<std::mutex> tlsLock(tlsMutex, std::defer_lock);
  if (mOptions.address.tls) {
    tlsLock.lock();
  }
  return mosquitto_connect_async(mHandle.get(), mOptions.address.host.c_str(), mOptions.address.port,
                                 kKeepAliveSeconds);
}

int MqttPubSubClient::Session::serveConnection() {
  bool disconnecting = false;
  mCloseStart = {};
  for (;;) {
    const TimePoint now = steady_clock::now();
    if (!mConnected && now - mConnectStart > kConnectLimit) {
      return MOSQ_ERR_KEEPALIVE;
    }
    if (mClosing) {
      mCloseStart = mCloseStart == TimePoint() ? now : mCloseStart;
      if (!mConnected || now - mCloseStart > kCloseLimit) {
        return MOSQ_ERR_SUCCESS;
      }
      if (!disconnecting && mayDisconnect()) {
        mosquitto_disconnect(mHandle.get());
        disconnecting = true;
      }
    }
    int result = mConnected ? updateSubscriptions() : MOSQ_ERR_SUCCESS;
    result = result == MOSQ_ERR_SUCCESS && mConnected ? sendQueued() : result;
    result = result == MOSQ_ERR_SUCCESS ? pollOnce(mClosing ? kClosingPollPeriod : kPollPeriod) : result;
    if (result != MOSQ_ERR_SUCCESS) {
      return result;
    }
  }
}

int MqttPubSubClient::Session::pollOnce(milliseconds limit) {
  mosquitto* const handle = mHandle.get();
  const int socket = mosquitto_socket(handle);
  if (socket < 0) {
    return MOSQ_ERR_NO_CONN;
  }
  const auto events = static_cast<short>(mosquitto_want_write(handle) ? POLLIN | POLLOUT : POLLIN);
  std::array<pollfd, 2> watched{{{socket, events, 0}, {mWakeFd, POLLIN, 0}}};
  poll(watched.data(), watched.size(), static_cast<int>(limit.count()));
  if (watched[1].revents != 0) {
    std::uint64_t count = 0;
    [[maybe_unused]] const ssize_t drained = read(mWakeFd, &count, sizeof count);
  }
  int result = MOSQ_ERR_SUCCESS;
  if ((watched[0].revents & POLLOUT) != 0) {
    result = mosquitto_loop_write(handle, 1);
  }
  if (result == MOSQ_ERR_SUCCESS && (watched[0].revents & (POLLIN | POLLERR | POLLHUP)) != 0) {
    result = mosquitto_loop_read(handle, 1);
  }
  return result == MOSQ_ERR_SUCCESS ? mosquitto_loop_misc(handle) : result;
}

int MqttPubSubClient::Session::sendQueued() {
  while (!mosquitto_want_write(mHandle.get()) && mUnacknowledged.size() < mReceiveMaximum) {
    Message next;
    {
      const std::lock_guard lock(mMutex);
      if (mOutbox.empty()) {
        break;
      }
      next = std::move(mOutbox.front());
      mOutbox.pop_front();
    }
    const MqttDelivery delivery = mqttDeliveryOf(next.topic);
    int id = 0;
    const int result = send(next, delivery, id);
    const bool refused = isRefusedMessage(result);
    if (refused) {
      PRB_LOGE(kTag, "%s: a message of %zu bytes on %s cannot be sent: %s", "publish", next.text.size(),
               next.topic.c_str(), mosquitto_strerror(result));
    } else if (delivery.qos > 0) {
      // Also when the connection broke under it: the MQTT library has it and sends it after the return.
      mUnacknowledged.insert(id);
    } else if (result != MOSQ_ERR_SUCCESS) {
      const std::lock_guard lock(mMutex);
      ++mUnsent;
    }
    if (!refused && result != MOSQ_ERR_SUCCESS) {
      return result;
    }
  }
  return MOSQ_ERR_SUCCESS;
}

int MqttPubSubClient::Session::send(const Message& message, const MqttDelivery& delivery, int& id) {
  mosquitto_property* properties = nullptr;
  if (delivery.retain) {
    mosquitto_property_add_string_pair(&properties, MQTT_PROP_USER_PROPERTY, kPublisherProperty,
                                       mIdentity.c_str());
  }
  const int result = mosquitto_publish_v5(
      mHandle.get(), &id, mqttName(mOptions.address.room, message.topic).c_str(),
      static_cast<int>(message.text.size()), message.text.data(), delivery.qos, delivery.retain, properties);
  mosquitto_property_free_all(&properties);
  return result;
}

int MqttPubSubClient::Session::updateSubscriptions() {
  std::set<std::string> wanted;
  {
    const std::lock_guard lock(mMutex);
    wanted.insert(mWanted.begin(), mWanted.end());
  }
  // First without the topics that a new one covers: two filters over one topic would deliver twice.
  int result = MOSQ_ERR_SUCCESS;
  for (auto asked = mAsked.begin(); asked != mAsked.end() && result == MOSQ_ERR_SUCCESS;) {
    if (wanted.count(*asked) != 0) {
      ++asked;
      continue;
    }
    result = mosquitto_unsubscribe(mHandle.get(), nullptr, mqttFilter(mOptions.address.room, *asked).c_str());
    asked = mAsked.erase(asked);
  }
  for (auto topic = wanted.begin(); topic != wanted.end() && result == MOSQ_ERR_SUCCESS; ++topic) {
    if (!mAsked.insert(*topic).second) {
      continue;
    }
    int id = 0;
    // At QoS 1 a message keeps the one that its publisher chose.
    result = mosquitto_subscribe_v5(mHandle.get(), &id, mqttFilter(mOptions.address.room, *topic).c_str(), 1,
                                    MQTT_SUB_OPT_NO_LOCAL | MQTT_SUB_OPT_SEND_RETAIN_NEW, nullptr);
    mUnconfirmed.insert(id);
  }
  reportReady();
  return result;
}

void MqttPubSubClient::Session::reportReady() {
  std::function<void()> callback;
  {
    const std::lock_guard lock(mMutex);
    const bool complete = mUnconfirmed.empty() && mAsked.size() == mWanted.size();
    if (complete) {
      callback = std::exchange(mWhenSubscribed, nullptr);
    }
  }
  if (callback) {
    callback();
  }
}

bool MqttPubSubClient::Session::mayDisconnect() {
  const std::lock_guard lock(mMutex);
  return mOutbox.empty() && mUnacknowledged.empty() && !mosquitto_want_write(mHandle.get());
}

void MqttPubSubClient::Session::onConnect(int reason, const mosquitto_property* properties) {
  if (reason != MQTT_RC_SUCCESS) {
    mRefusal = mosquitto_reason_string(reason);
    return;
  }
  std::uint16_t receiveMaximum = 0;
  mReceiveMaximum = kDefaultReceiveMaximum;
  if (mosquitto_property_read_int16(properties, MQTT_PROP_RECEIVE_MAXIMUM, &receiveMaximum, false) !=
          nullptr &&
      receiveMaximum > 0) {
    mReceiveMaximum = std::min<std::size_t>(receiveMaximum, kDefaultReceiveMaximum);
  }
  std::uint64_t unsent = 0;
  {
    const std::lock_guard lock(mMutex);
    mConnected = true;
    unsent = std::exchange(mUnsent, 0);
  }
  mOutageSaid = false;
  mRefusalSaid = false;
  const std::string address = mOptions.address.text();
  if (mEverConnected || unsent > 0) {
    PRB_LOGI(kTag, "%s to %s, %" PRIu64 " messages could not be sent",
             mEverConnected ? "connected again" : "connected", address.c_str(), unsent);
  } else {
    PRB_LOGI(kTag, "connected to %s", address.c_str());
  }
  mEverConnected = true;
}

bool MqttPubSubClient::Session::isOwn(const mosquitto_property* properties) const {
  char* name = nullptr;
  char* value = nullptr;
  bool own = false;
  if (mosquitto_property_read_string_pair(properties, MQTT_PROP_USER_PROPERTY, &name, &value, false) !=
      nullptr) {
    own = std::strcmp(name, kPublisherProperty) == 0 && mIdentity == value;
  }
  std::free(name);
  std::free(value);
  return own;
}

void MqttPubSubClient::Session::onMessage(const mosquitto_message& message,
                                          const mosquitto_property* properties) {
  const std::optional<std::string> topic = topicOfMqttName(mOptions.address.room, message.topic);
  if (!topic || isOwn(properties)) {
    return;
  }
  const std::string text(static_cast<const char*>(message.payload),
                         static_cast<std::size_t>(message.payloadlen));
  const std::lock_guard lock(mDispatchMutex);
  for (IPubSubListener* listener : mSubscriptions.listenersOf(*topic)) {
    listener->onMessage(*topic, text);
  }
}

void MqttPubSubClient::Session::onSubscribe(int id, int count, const int* granted) {
  for (int index = 0; index < count; ++index) {
    if (granted[index] >= kFailureReasons) {
      PRB_LOGE(kTag, "%s refuses a subscription: %s", mOptions.address.text().c_str(),
               mosquitto_reason_string(granted[index]));
    }
  }
  mUnconfirmed.erase(id);
  reportReady();
}

void MqttPubSubClient::Session::connectionEnded(int result) {
  const std::string reason = mRefusal.empty() ? errorText(result) : mRefusal;
  bool lost = false;
  {
    const std::lock_guard lock(mMutex);
    lost = std::exchange(mConnected, false);
    mUnsent += mOutbox.size();
    mOutbox.clear();
  }
  mAsked.clear();
  mUnconfirmed.clear();
  const bool refused = !mRefusal.empty();
  mRefusal.clear();
  // A refusal needs a person, so it is said even if the outage began otherwise; each once until the return.
  const bool outageKnown = std::exchange(mOutageSaid, true);
  const bool refusalKnown = refused ? std::exchange(mRefusalSaid, true) : true;
  if (mClosing || (outageKnown && refusalKnown)) {
    return;
  }
  PRB_LOGW(kTag, "%s %s (%s), trying on", lost ? "lost the connection to" : "cannot connect to",
           mOptions.address.text().c_str(), reason.c_str());
}

void MqttPubSubClient::Session::pauseFor(milliseconds pause) {
  const TimePoint end = steady_clock::now() + pause;
  while (!mClosing) {
    const auto left = std::chrono::duration_cast<milliseconds>(end - steady_clock::now());
    if (left.count() <= 0) {
      return;
    }
    pollfd watched{mWakeFd, POLLIN, 0};
    poll(&watched, 1, static_cast<int>(left.count()));
    std::uint64_t count = 0;
    [[maybe_unused]] const ssize_t drained = read(mWakeFd, &count, sizeof count);
  }
}

}  // namespace fyn::productionrules
