#include "daemon/ServiceManager.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <string_view>

namespace fyn::productionrules {

// One datagram: of systemd's library only this would be used, and a build without it must report as well.
void tellServiceManager(const std::string& notice) {
  const char* const variable = std::getenv("NOTIFY_SOCKET");
  const std::string_view path = variable != nullptr ? variable : "";
  sockaddr_un address{};
  if (path.empty() || path.size() >= sizeof address.sun_path) {
    return;
  }
  address.sun_family = AF_UNIX;
  std::memcpy(address.sun_path, path.data(), path.size());
  if (path.front() == '@') {
    // A socket without a file.
    address.sun_path[0] = '\0';
  }
  const int descriptor = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  const auto length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + path.size());
  sendto(descriptor, notice.data(), notice.size(), MSG_NOSIGNAL, reinterpret_cast<const sockaddr*>(&address),
         length);
  close(descriptor);
}

}  // namespace fyn::productionrules
