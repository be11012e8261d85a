#include "tools/video/source/FeedMessage.h"

#include <sys/socket.h>

#include <cstring>

#include "tools/base/UsageError.h"

namespace fyn::productionrules::video {

sockaddr_un feedAddress(const std::string& path) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  if (path.empty() || path.size() >= sizeof(address.sun_path)) {
    throw UsageError("\"" + path + "\" cannot be the name of a socket: it has to have 1 to " +
                     std::to_string(sizeof(address.sun_path) - 1) + " bytes");
  }
  std::memcpy(address.sun_path, path.c_str(), path.size());
  return address;
}

}  // namespace fyn::productionrules::video
