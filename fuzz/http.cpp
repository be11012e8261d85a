// What anybody may send to the server of the viewer page.
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>

#include "fuzz/FuzzRoom.h"
#include "tools/view/ViewServer.h"

namespace {

using namespace fyn::productionrules;

/** A recording with one line, so that every answer ends. */
LineLog& lines() {
  static auto* const log = new LineLog(LineLog::ofRecording());
  static const bool isFilled = [] {
    log->put({0, LineWorth::Kept, "", "{}"});
    log->finish();
    return true;
  }();
  static_cast<void>(isFilled);
  return *log;
}

int connectTo(int port) {
  const int descriptor = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<std::uint16_t>(port));
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  connect(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address);
  return descriptor;
}

void ask(int port, std::string_view text) {
  const int descriptor = connectTo(port);
  send(descriptor, text.data(), text.size(), MSG_NOSIGNAL);
  if (text.find("\r\n\r\n") == std::string_view::npos) {
    // Never a whole request: its end saves the wait for more.
    shutdown(descriptor, SHUT_WR);
  }
  std::array<char, 4096> answer{};
  while (recv(descriptor, answer.data(), answer.size(), 0) > 0) {
  }
  close(descriptor);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr std::chrono::milliseconds kRequestLimit{20};
  // Never destroyed: libFuzzer ends the process while the threads of the servers wait.
  static const auto* const open =
      new ViewServer(lines(), "fuzz", ViewServerOptions{"127.0.0.1", 0, "", kRequestLimit});
  static const auto* const closed = new ViewServer(
      lines(), "fuzz", ViewServerOptions{"127.0.0.1", 0, "a-token-of-the-fuzzer", kRequestLimit});
  ask(open->port(), fuzzText(data, size));
  ask(closed->port(), fuzzText(data, size));
  return 0;
}
