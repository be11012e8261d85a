#pragma once

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstring>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>

#include "platform/Mutex.h"
#include "platform/PubSub.h"
#include "platform/SubscriptionList.h"

/** The address of a socket in the file system. */
inline sockaddr_un socketAddress(const std::string& path) {
  sockaddr_un address{};
  if (path.size() >= sizeof address.sun_path) {
    throw std::invalid_argument("the path of the socket is too long: " + path);
  }
  address.sun_family = AF_UNIX;
  std::memcpy(address.sun_path, path.data(), path.size());
  return address;
}

/** Sends without waiting; false when nobody takes it. */
inline bool sendDatagram(int socket, const std::string& path, std::string_view text) {
  const sockaddr_un to = socketAddress(path);
  const auto* const address = reinterpret_cast<const sockaddr*>(&to);
  return sendto(socket, text.data(), text.size(), MSG_DONTWAIT | MSG_NOSIGNAL, address, sizeof to) >= 0;
}

/**
 * The bus of this device: each datagram is a topic, a blank and the message. The service hears those sent to
 * the socket "service" of a folder and sends its own to the socket "device".
 */
class DatagramBus final : public com::quil::pubsub::IPubSubClient {
 public:
  explicit DatagramBus(const std::string& folder)
      : mDevice(folder + "/device"), mSocket(socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0)) {
    const std::string own = folder + "/service";
    unlink(own.c_str());
    const sockaddr_un address = socketAddress(own);
    if (bind(mSocket, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
      throw std::invalid_argument("the bus cannot be reached: " + own + ": " + std::strerror(errno));
    }
    mReader = std::thread([this] { receive(); });
  }

  ~DatagramBus() override {
    close();
    ::close(mSocket);
  }

  void publish(const std::string& topic, const std::string& message) override {
    sendDatagram(mSocket, mDevice, topic + ' ' + message);
  }

  void advertise(const std::string& /*topic*/) override {}

  void subscribe(const std::string& topic, com::quil::pubsub::IPubSubListener& listener) override {
    const fyn::productionrules::MutexLock lock(mMutex);
    mSubscriptions.add(topic, listener);
  }

  void close() override {
    shutdown(mSocket, SHUT_RDWR);
    const fyn::productionrules::MutexLock lock(mClosing);
    if (mReader.joinable()) {
      mReader.join();
    }
  }

 private:
  void receive() {
    std::string datagram(kLargest, '\0');
    for (;;) {
      const ssize_t length = recv(mSocket, datagram.data(), datagram.size(), 0);
      if (length <= 0) {
        return;
      }
      const std::string_view received(datagram.data(), static_cast<std::size_t>(length));
      const std::size_t blank = std::min(received.find(' '), received.size() - 1);
      deliver(std::string(received.substr(0, blank)), std::string(received.substr(blank + 1)));
    }
  }

  void deliver(const std::string& topic, const std::string& message) {
    std::vector<com::quil::pubsub::IPubSubListener*> listeners;
    {
      const fyn::productionrules::MutexLock lock(mMutex);
      listeners = mSubscriptions.listenersOf(topic);
    }
    // Without the lock, so that a listener may subscribe.
    for (com::quil::pubsub::IPubSubListener* listener : listeners) {
      listener->onMessage(topic, message);
    }
  }

  static constexpr std::size_t kLargest = 1 << 18;

  const std::string mDevice;
  const int mSocket;
  fyn::productionrules::Mutex mMutex;
  fyn::productionrules::SubscriptionList mSubscriptions PR_GUARDED_BY(mMutex);
  fyn::productionrules::Mutex mClosing;
  std::thread mReader PR_GUARDED_BY(mClosing);
};
