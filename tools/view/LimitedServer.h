#pragma once

#include <httplib.h>
#include <sys/socket.h>
#include <unistd.h>

#include <atomic>

#include "tools/view/RequestLimits.h"
#include "tools/view/RequestStream.h"

namespace fyn::productionrules {

/** One request per connection, which must come in time: the library itself waits for as much as anybody
 * sends. */
class LimitedServer final : public httplib::Server {
 public:
  LimitedServer(const RequestStream::Times& times, const std::atomic<bool>& ending)
      : mTimes(times), mEnding(ending) {}

 private:
  bool process_and_close_socket(socket_t socket) override {
    bool isAnswered = false;
    {
      RequestStream stream(socket, mTimes, mLimits, mEnding);
      bool isClosed = false;
      isAnswered = process_request(stream, true, isClosed, nullptr);
    }
    shutdown(socket, SHUT_RDWR);
    close(socket);
    return isAnswered;
  }

  const RequestStream::Times mTimes;
  const std::atomic<bool>& mEnding;
  RequestLimits mLimits;
};

}  // namespace fyn::productionrules
