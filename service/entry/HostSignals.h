#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <thread>

#include "platform/BaseIPCService.h"
#include "platform/DevicePlatform.h"

namespace fyn::productionrules {

/**
 * How the process that hosts the service talks to it, through file descriptors whose numbers it puts into the
 * environment; each may be absent:
 * - PRB_STOP_FD: readable as soon as the service is to end;
 * - PRB_READY_FD: gets one byte, 'r' once the service has started and the bus delivers to it, or 'w' when it
 * has started and still waits for the bus after ten seconds;
 * - PRB_STATUS_FD: gets a line each time that what it says of mode, vision results and provider has changed;
 * - PRB_ALIVE_FD: an event descriptor, raised every period by the thread that handles the messages.
 */
class HostSignals {
 public:
  HostSignals();
  ~HostSignals();
  HostSignals(const HostSignals&) = delete;
  HostSignals& operator=(const HostSignals&) = delete;

  /** Begins to watch for the stop of `service`. What it says of `device` begins once it has
   * initialised itself. */
  void attach(BaseIPCService& service, const DevicePlatform& device);

 private:
  /** Shared with the bus client, which may report after this object has gone. */
  struct Readiness {
    int fd = -1;
    std::atomic<bool> said{false};
    void say(char byte);
  };

  void watch(BaseIPCService& service);

  const int mStopFd;
  const int mEndFd;
  const std::shared_ptr<Readiness> mReadiness = std::make_shared<Readiness>();
  std::thread mWatcher;
};

}  // namespace fyn::productionrules
