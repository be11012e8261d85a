#include "tools/view/RequestStream.h"

#include <netdb.h>
#include <poll.h>
#include <sys/socket.h>

#include <algorithm>
#include <cstdlib>

namespace fyn::productionrules {

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

/** How soon the end of the server is seen. */
constexpr milliseconds kStep{100};

bool isReady(socket_t socket, short events, milliseconds limit) {
  pollfd watched{socket, events, 0};
  return poll(&watched, 1, static_cast<int>(limit.count())) > 0;
}

using NameGetter = int (*)(int, sockaddr*, socklen_t*);

void numericName(NameGetter get, socket_t socket, std::string& ip, int& port) {
  sockaddr_storage name{};
  socklen_t length = sizeof name;
  auto* const address = reinterpret_cast<sockaddr*>(&name);
  std::array<char, NI_MAXHOST> host{};
  std::array<char, NI_MAXSERV> service{};
  if (get(socket, address, &length) == 0 &&
      getnameinfo(address, length, host.data(), host.size(), service.data(), service.size(),
                  NI_NUMERICHOST | NI_NUMERICSERV) == 0) {
    ip = host.data();
    port = static_cast<int>(std::strtol(service.data(), nullptr, 10));
  }
}

}  // namespace

RequestStream::RequestStream(socket_t socket, const Times& times, RequestLimits& limits,
                             const std::atomic<bool>& ending)
    : mSocket(socket),
      mTimes(times),
      mLimits(limits),
      mEnding(ending),
      mDeadline(steady_clock::now() + times.request) {
  std::string address;
  int port = 0;
  get_remote_ip_and_port(address, port);
  mLimits.enter(socket, address);
}

RequestStream::~RequestStream() {
  mLimits.leave(mSocket);
}

bool RequestStream::is_readable() const {
  return mPlace < mEnd || isReady(mSocket, POLLIN, milliseconds(0));
}

bool RequestStream::is_writable() const {
  if (!isReady(mSocket, POLLOUT, mTimes.write)) {
    return false;
  }
  char byte = 0;
  return !isReady(mSocket, POLLIN, milliseconds(0)) || recv(mSocket, &byte, 1, MSG_PEEK) > 0;
}

ssize_t RequestStream::read(char* bytes, std::size_t size) {
  if (mPlace == mEnd) {
    if (const ssize_t count = fill(); count <= 0) {
      return count;
    }
  }
  const std::size_t count = std::min(size, mEnd - mPlace);
  std::copy_n(mPart.data() + mPlace, count, bytes);
  mPlace += count;
  return static_cast<ssize_t>(count);
}

ssize_t RequestStream::fill() {
  const std::size_t room = std::min(mPart.size(), kLargest - mTaken);
  while (room > 0 && !mEnding) {
    const auto left = std::chrono::ceil<milliseconds>(mDeadline - steady_clock::now());
    if (left <= milliseconds(0)) {
      break;
    }
    if (!isReady(mSocket, POLLIN, std::min(left, kStep))) {
      continue;
    }
    const ssize_t count = recv(mSocket, mPart.data(), room, 0);
    if (count > 0) {
      mPlace = 0;
      mEnd = static_cast<std::size_t>(count);
      mTaken += mEnd;
    }
    return count;
  }
  return -1;
}

ssize_t RequestStream::write(const char* bytes, std::size_t size) {
  // An answer begins when the request has come.
  mLimits.leave(mSocket);
  return is_writable() ? send(mSocket, bytes, size, MSG_NOSIGNAL) : -1;
}

void RequestStream::get_remote_ip_and_port(std::string& ip, int& port) const {
  numericName(getpeername, mSocket, ip, port);
}

void RequestStream::get_local_ip_and_port(std::string& ip, int& port) const {
  numericName(getsockname, mSocket, ip, port);
}

}  // namespace fyn::productionrules
