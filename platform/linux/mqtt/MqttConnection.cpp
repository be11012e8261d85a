#include "platform/linux/mqtt/MqttConnection.h"

#include <mosquitto.h>
#include <mqtt_protocol.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <random>
#include <stdexcept>

#include "platform/MessageQueue.h"
#include "platform/Mutex.h"
#include "platform/VisionSettings.h"
#include "platform/linux/mqtt/MqttStatus.h"

namespace fyn::productionrules {

namespace {

constexpr const char* kTag = "MqttPubSubClient";
constexpr int kKeepAliveSeconds = 10;
// What a broker takes that states nothing else.
constexpr std::size_t kDefaultReceiveMaximum = 65535;
constexpr int kFailureReasons = 0x80;
// A broker keeps larger packets from this client, unseen; so it is twice of what is taken, and what is a
// little too large is still seen and said.
constexpr std::uint32_t kLargestPacket = 2 * MessageQueue::kLargestMessage;
// A broker may show a retained message to its own publisher in spite of no-local, so those carry the
// publisher.
constexpr const char* kPublisherProperty = "publisher";

std::string newIdentity() {
  std::random_device random;
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "prb-%08x%08x", random(), random());
  return text.data();
}

std::size_t receiveMaximumOf(const mosquitto_property* properties) {
  std::uint16_t maximum = 0;
  const bool stated =
      mosquitto_property_read_int16(properties, MQTT_PROP_RECEIVE_MAXIMUM, &maximum, false) != nullptr;
  return stated && maximum > 0 ? maximum : kDefaultReceiveMaximum;
}

/** The publisher that a retained message carries; empty when it carries none. */
std::string publisherOf(const mosquitto_property* properties) {
  char* name = nullptr;
  char* value = nullptr;
  std::string publisher;
  if (mosquitto_property_read_string_pair(properties, MQTT_PROP_USER_PROPERTY, &name, &value, false) !=
          nullptr &&
      std::strcmp(name, kPublisherProperty) == 0) {
    publisher = value;
  }
  std::free(name);
  std::free(value);
  return publisher;
}

// A broker may send a message only when the one before is acknowledged (Nagle), and the kernel takes up to 40
// ms for that: longer than a camera takes for a frame. The kernel forgets the wish, so it is said after each
// read.
void acknowledgeNow(int socket) {
  const int yes = 1;
  setsockopt(socket, IPPROTO_TCP, TCP_QUICKACK, &yes, sizeof yes);
}

}  // namespace

/** What the library calls. It is C: nothing may be thrown through it. A message that memory does not suffice
 * for is lost. */
struct MqttConnection::Callbacks {
  template <typename Work>
  static void guarded(const char* callback, void* context, Work work) {
    try {
      work(*static_cast<MqttConnection*>(context));
    } catch (const std::exception& fault) {
      PRB_LOGE(kTag, "%s: %s", callback, fault.what());
    }
  }

  static void onConnected(mosquitto*, void* context, int reason, int /*flags*/,
                          const mosquitto_property* properties) {
    guarded("onConnected", context, [&](MqttConnection& self) {
      if (reason == MQTT_RC_SUCCESS) {
        self.mEvents.onConnected(receiveMaximumOf(properties));
      } else {
        self.mEvents.onRefused(mosquitto_reason_string(reason));
      }
    });
  }

  static void onMessage(mosquitto*, void* context, const mosquitto_message* message,
                        const mosquitto_property* properties) {
    guarded("onMessage", context, [&](MqttConnection& self) {
      if (publisherOf(properties) != self.mIdentity) {
        self.mEvents.onMessage(message->topic, std::string(static_cast<const char*>(message->payload),
                                                           static_cast<std::size_t>(message->payloadlen)));
      }
    });
  }

  static void onSubscribed(mosquitto*, void* context, int id, int count, const int* granted) {
    guarded("onSubscribed", context, [&](MqttConnection& self) {
      for (int index = 0; index < count; ++index) {
        if (granted[index] >= kFailureReasons) {
          PRB_LOGE(kTag, "%s refuses a subscription: %s", self.mOptions.address.text().c_str(),
                   mosquitto_reason_string(granted[index]));
        }
      }
      self.mEvents.onSubscribed(id);
    });
  }

  static void onPublished(mosquitto*, void* context, int id) {
    guarded("onPublished", context, [&](MqttConnection& self) { self.mEvents.onPublished(id); });
  }

  static void onLog(mosquitto*, void* context, int /*level*/, const char* line) {
    guarded("onLog", context, [&](MqttConnection& self) { self.mTlsFault.note(line); });
  }
};

void MqttConnection::FreeMosquitto::operator()(mosquitto* handle) const {
  mosquitto_destroy(handle);
}

MqttConnection::MqttConnection(const MqttOptions& options, MqttEvents& events)
    : mOptions(options),
      mEvents(events),
      mIdentity(newIdentity()),
      mWakeFd(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
  static const int initialised = mosquitto_lib_init();
  if (initialised != MOSQ_ERR_SUCCESS || mWakeFd < 0) {
    throw std::runtime_error("the MQTT library cannot be started");
  }
  try {
    createHandle();
  } catch (...) {
    close(mWakeFd);
    throw;
  }
}

MqttConnection::~MqttConnection() {
  close(mWakeFd);
}

void MqttConnection::createHandle() {
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
    setUpTls(handle, mOptions);
    mosquitto_log_callback_set(handle, Callbacks::onLog);
  }
  mosquitto_connect_v5_callback_set(handle, Callbacks::onConnected);
  mosquitto_message_v5_callback_set(handle, Callbacks::onMessage);
  mosquitto_subscribe_callback_set(handle, Callbacks::onSubscribed);
  mosquitto_publish_callback_set(handle, Callbacks::onPublished);
  announceLimits();
  leaveWill();
}

// The library takes properties only with its connect that waits for the network. That fails at the missing
// host, after it has kept them for each connect to come.
void MqttConnection::announceLimits() {
  mosquitto_property* limits = nullptr;
  mosquitto_property_add_int32(&limits, MQTT_PROP_MAXIMUM_PACKET_SIZE, kLargestPacket);
  const int result = mosquitto_connect_bind_v5(mHandle.get(), nullptr, 0, kKeepAliveSeconds, nullptr, limits);
  mosquitto_property_free_all(&limits);
  if (result != MOSQ_ERR_INVAL) {
    throw std::runtime_error(std::string("the MQTT library takes no packet limit: ") +
                             mosquitto_strerror(result));
  }
}

void MqttConnection::leaveWill() {
  if (mOptions.health == nullptr) {
    return;
  }
  const std::string name = mqttName(mOptions.address.room, MqttStatus::kTopic);
  const std::string will = MqttStatus::kLost;
  mosquitto_will_set(mHandle.get(), name.c_str(), static_cast<int>(will.size()), will.data(), 1, true);
}

int MqttConnection::connect() {
  if (!mOptions.address.tls) {
    return startConnecting();
  }
  // The MQTT library sets up TLS for the whole process within the first connect, without a lock of its own.
  static Mutex tlsMutex;
  const MutexLock lock(tlsMutex);
  return startConnecting();
}

int MqttConnection::startConnecting() {
  return mosquitto_connect_async(mHandle.get(), mOptions.address.host.c_str(), mOptions.address.port,
                                 kKeepAliveSeconds);
}

void MqttConnection::disconnect() {
  mosquitto_disconnect(mHandle.get());
}

pollfd MqttConnection::socketToWatch() const {
  return {mosquitto_socket(mHandle.get()), static_cast<short>(wantsToWrite() ? POLLIN | POLLOUT : POLLIN), 0};
}

void MqttConnection::wait(pollfd& socket, std::chrono::milliseconds limit) {
  std::array<pollfd, 2> watched{{socket, {mWakeFd, POLLIN, 0}}};
  ::poll(watched.data(), watched.size(), static_cast<int>(limit.count()));
  socket = watched[0];
  if (watched[1].revents != 0) {
    drainWakes();
  }
}

int MqttConnection::transfer(const pollfd& socket) {
  mosquitto* const handle = mHandle.get();
  int result = MOSQ_ERR_SUCCESS;
  if ((socket.revents & POLLOUT) != 0) {
    result = mosquitto_loop_write(handle, 1);
  }
  if (result == MOSQ_ERR_SUCCESS && (socket.revents & (POLLIN | POLLERR | POLLHUP)) != 0) {
    result = mosquitto_loop_read(handle, 1);
    acknowledgeNow(socket.fd);
  }
  return result == MOSQ_ERR_SUCCESS ? mosquitto_loop_misc(handle) : result;
}

bool MqttConnection::wantsToWrite() const {
  return mosquitto_want_write(mHandle.get());
}

int MqttConnection::publish(const std::string& name, const std::string& text, const MqttDelivery& delivery,
                            int& id) {
  mosquitto_property* properties = nullptr;
  if (delivery.retain) {
    mosquitto_property_add_string_pair(&properties, MQTT_PROP_USER_PROPERTY, kPublisherProperty,
                                       mIdentity.c_str());
  }
  const int result = mosquitto_publish_v5(mHandle.get(), &id, name.c_str(), static_cast<int>(text.size()),
                                          text.data(), delivery.qos, delivery.retain, properties);
  mosquitto_property_free_all(&properties);
  return result;
}

int MqttConnection::subscribe(const std::string& filter, int& id) {
  // At QoS 1 a message keeps the one that its publisher chose.
  return mosquitto_subscribe_v5(mHandle.get(), &id, filter.c_str(), 1,
                                MQTT_SUB_OPT_NO_LOCAL | MQTT_SUB_OPT_SEND_RETAIN_NEW, nullptr);
}

int MqttConnection::unsubscribe(const std::string& filter) {
  return mosquitto_unsubscribe(mHandle.get(), nullptr, filter.c_str());
}

void MqttConnection::wake() {
  const std::uint64_t one = 1;
  // A full counter wakes as well.
  [[maybe_unused]] const ssize_t written = write(mWakeFd, &one, sizeof one);
}

void MqttConnection::drainWakes() {
  std::uint64_t count = 0;
  [[maybe_unused]] const ssize_t drained = read(mWakeFd, &count, sizeof count);
}

std::string MqttConnection::errorText(int result) {
  const int code = errno;
  std::string tlsFault = mTlsFault.take();
  if (!tlsFault.empty()) {
    return tlsFault;
  }
  if (mOptions.address.tls && result == MOSQ_ERR_ERRNO && code == EPROTO) {
    return "the broker has cut TLS off; perhaps it wants a client certificate: --mqtt-cert and --mqtt-key";
  }
  // The library has no text for it.
  if (result == MOSQ_ERR_KEEPALIVE) {
    return "the broker does not answer";
  }
  return result == MOSQ_ERR_ERRNO ? std::strerror(code) : mosquitto_strerror(result);
}

}  // namespace fyn::productionrules
