#include "tools/view/RequestLimits.h"

#include <sys/socket.h>

#include <algorithm>

namespace fyn::productionrules {

void RequestLimits::enter(int socket, const std::string& address) {
  const MutexLock lock(mMutex);
  mAwaited.push_back({socket, address});
  shutDownOldest(&address, kMostPerAddress);
  shutDownOldest(nullptr, kMost);
}

void RequestLimits::leave(int socket) {
  const MutexLock lock(mMutex);
  mAwaited.remove_if([socket](const Awaited& awaited) { return awaited.socket == socket; });
}

// Its own thread closes the socket, and sees the end before.
void RequestLimits::shutDownOldest(const std::string* address, std::size_t most) {
  const auto counts = [address](const Awaited& awaited) {
    return !awaited.isShutDown && (address == nullptr || awaited.address == *address);
  };
  if (static_cast<std::size_t>(std::count_if(mAwaited.begin(), mAwaited.end(), counts)) <= most) {
    return;
  }
  Awaited& oldest = *std::find_if(mAwaited.begin(), mAwaited.end(), counts);
  oldest.isShutDown = true;
  ::shutdown(oldest.socket, SHUT_RDWR);
}

}  // namespace fyn::productionrules
