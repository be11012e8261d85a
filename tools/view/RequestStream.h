#pragma once

#include <httplib.h>

#include <array>
#include <atomic>
#include <chrono>

#include "tools/view/RequestLimits.h"

namespace fyn::productionrules {

/** One connection of the server: one request that comes within a time and a size, and its answer. */
class RequestStream final : public httplib::Stream {
 public:
  /** Bytes of a request with all its headers. */
  static constexpr std::size_t kLargest = 16'384;

  struct Times {
    /** For the whole request. */
    std::chrono::milliseconds request;
    /** For one attempt to write. */
    std::chrono::milliseconds write;
  };

  /** Does not own `socket`. Everything outlives it; reading ends when `ending` becomes true. */
  RequestStream(socket_t socket, const Times& times, RequestLimits& limits, const std::atomic<bool>& ending);
  ~RequestStream() override;
  RequestStream(const RequestStream&) = delete;
  RequestStream& operator=(const RequestStream&) = delete;

  bool is_readable() const override;
  /** False as well when the other side is gone. */
  bool is_writable() const override;
  ssize_t read(char* bytes, std::size_t size) override;
  ssize_t write(const char* bytes, std::size_t size) override;
  void get_remote_ip_and_port(std::string& ip, int& port) const override;
  void get_local_ip_and_port(std::string& ip, int& port) const override;
  socket_t socket() const override { return mSocket; }

 private:
  ssize_t fill();

  const socket_t mSocket;
  const Times mTimes;
  RequestLimits& mLimits;
  const std::atomic<bool>& mEnding;
  const std::chrono::steady_clock::time_point mDeadline;
  std::array<char, 4096> mPart;
  std::size_t mPlace = 0;
  std::size_t mEnd = 0;
  std::size_t mTaken = 0;
};

}  // namespace fyn::productionrules
