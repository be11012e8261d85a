#include "service/entry/HostSignals.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <array>
#include <cstdint>
#include <cstdlib>
#include <stdexcept>
#include <string>

#include "platform/SystemProperties.h"
#include "platform/Ticks.h"
#include "service/entry/HealthText.h"

namespace fyn::productionrules {

namespace {

constexpr int kBusPatienceMs = 10000;

int descriptorFrom(const char* variable) {
  const char* const text = std::getenv(variable);
  return text == nullptr ? -1 : parsePropertyInt(text).value_or(-1);
}

}  // namespace

void HostSignals::Readiness::say(char byte) {
  if (fd >= 0 && !said.exchange(true)) {
    [[maybe_unused]] const ssize_t written = write(fd, &byte, 1);
  }
}

HostSignals::HostSignals() : mStopFd(descriptorFrom("PRB_STOP_FD")), mEndFd(eventfd(0, EFD_CLOEXEC)) {
  if (mEndFd < 0) {
    throw std::runtime_error("no event descriptor left");
  }
  mReadiness->fd = descriptorFrom("PRB_READY_FD");
}

HostSignals::~HostSignals() {
  if (mWatcher.joinable()) {
    const std::uint64_t one = 1;
    [[maybe_unused]] const ssize_t written = write(mEndFd, &one, sizeof one);
    mWatcher.join();
  }
  close(mEndFd);
}

void HostSignals::attach(BaseIPCService& service, const DevicePlatform& device) {
  service.setInitialisedHandler(
      [readiness = mReadiness, ask = device.whenBusReady] { ask([readiness] { readiness->say('r'); }); });
  service.setPeriodHandler([alive = descriptorFrom("PRB_ALIVE_FD"), status = descriptorFrom("PRB_STATUS_FD"),
                            text = HealthText(GetTicks()), health = device.platform.health]() mutable {
    const std::uint64_t one = 1;
    [[maybe_unused]] ssize_t written = write(alive, &one, sizeof one);
    if (const std::string change = text.changeAt(GetTicks(), health->read()); !change.empty()) {
      written = write(status, (change + '\n').c_str(), change.size() + 1);
    }
  });
  mWatcher = std::thread([this, &service] { watch(service); });
}

void HostSignals::watch(BaseIPCService& service) {
  std::array<pollfd, 2> watched{{{mStopFd, POLLIN, 0}, {mEndFd, POLLIN, 0}}};
  int limit = kBusPatienceMs;
  for (;;) {
    const int count = poll(watched.data(), watched.size(), limit);
    if (watched[1].revents != 0) {
      return;
    }
    if (count > 0 && watched[0].revents != 0) {
      service.stop();
      return;
    }
    if (count == 0) {
      mReadiness->say('w');
      limit = -1;
    }
  }
}

}  // namespace fyn::productionrules
