#include "tools/base/StopSignals.h"

#include <algorithm>
#include <cerrno>

namespace fyn::productionrules {

StopSignals::StopSignals() {
  sigemptyset(&mSignals);
  sigaddset(&mSignals, SIGINT);
  sigaddset(&mSignals, SIGTERM);
  // A terminal that is closed; not under nohup.
  struct sigaction hangUp {};
  sigaction(SIGHUP, nullptr, &hangUp);
  if (hangUp.sa_handler != SIG_IGN) {
    sigaddset(&mSignals, SIGHUP);
  }
  pthread_sigmask(SIG_BLOCK, &mSignals, &mFormerMask);
}

StopSignals::~StopSignals() {
  pthread_sigmask(SIG_SETMASK, &mFormerMask, nullptr);
}

bool StopSignals::waitFor(std::chrono::nanoseconds limit) {
  const auto end = std::chrono::steady_clock::now() + limit;
  while (!mStopped) {
    const auto left = std::max(std::chrono::nanoseconds(0),
                               std::chrono::nanoseconds(end - std::chrono::steady_clock::now()));
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(left);
    timespec time{};
    time.tv_sec = static_cast<time_t>(seconds.count());
    time.tv_nsec = static_cast<long>((left - seconds).count());
    mStopped = sigtimedwait(&mSignals, nullptr, &time) > 0;
    if (!mStopped && errno != EINTR) {
      break;
    }
  }
  return mStopped;
}

}  // namespace fyn::productionrules
