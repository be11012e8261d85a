#pragma once

#include <list>
#include <string>

#include "platform/Mutex.h"

namespace fyn::productionrules {

/**
 * The connections whose requests have not wholly come. Anybody may open connections and say nothing, so there
 * are at most `kMost` of them and `kMostPerAddress` of one address: for a newer one the oldest is shut down.
 * Used from any thread.
 */
class RequestLimits {
 public:
  static constexpr std::size_t kMost = 40;
  /** All pages that may be open, when they are loaded at the same moment, and some more. */
  static constexpr std::size_t kMostPerAddress = 32;

  /** From here on the request of this socket is awaited. */
  void enter(int socket, const std::string& address);

  /** The request has come, or never will. Before the socket is closed; more than once does no harm. */
  void leave(int socket);

 private:
  struct Awaited {
    int socket;
    std::string address;
    bool isShutDown = false;
  };

  void shutDownOldest(const std::string* address, std::size_t most) PR_REQUIRES(mMutex);

  Mutex mMutex;
  /** The oldest first. */
  std::list<Awaited> mAwaited PR_GUARDED_BY(mMutex);
};

}  // namespace fyn::productionrules
