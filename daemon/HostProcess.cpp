#include "daemon/HostProcess.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/eventfd.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string_view>
#include <system_error>
#include <thread>

#include "daemon/ServiceManager.h"

namespace fyn::productionrules {

namespace {

using EntryFunction = void (*)(const char* name, bool loadConfig);

constexpr const char* kEntry = "productionRulesServiceMain";
constexpr int kInterrupted = 130;

/** The library stays loaded until the process ends: a thread of the service may outlive its entry function.
 */
EntryFunction loadEntry(const std::string& library) {
  void* const handle = dlopen(library.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (handle == nullptr) {
    throw std::invalid_argument(std::string("the service library cannot be loaded: ") + dlerror());
  }
  void* const symbol = dlsym(handle, kEntry);
  if (symbol == nullptr) {
    throw std::invalid_argument("\"" + library + "\" is not the service library: it has no " + kEntry);
  }
  return reinterpret_cast<EntryFunction>(symbol);
}

int signalDescriptor() {
  sigset_t ends;
  sigemptyset(&ends);
  sigaddset(&ends, SIGTERM);
  sigaddset(&ends, SIGINT);
  // Before any other thread starts, so that none of them takes the signals.
  pthread_sigmask(SIG_BLOCK, &ends, nullptr);
  return signalfd(-1, &ends, SFD_CLOEXEC);
}

int checked(int descriptor) {
  if (descriptor < 0) {
    throw std::system_error(errno, std::generic_category(), "no file descriptor left");
  }
  return descriptor;
}

void raise(int eventDescriptor) {
  const std::uint64_t one = 1;
  [[maybe_unused]] const ssize_t written = write(eventDescriptor, &one, sizeof one);
}

/** The last of the lines that wait in a pipe; its writer writes whole ones. */
std::string newestLine(int descriptor) {
  std::array<char, 4096> lines{};
  const ssize_t length = read(descriptor, lines.data(), lines.size());
  std::string_view text(lines.data(), static_cast<std::size_t>(std::max<ssize_t>(length, 1)) - 1);
  return std::string(text.substr(text.rfind('\n') + 1));
}

/** Waits for the end of the service and passes on what happens until then; true when a signal asked for it.
 */
bool attend(int signals, int ready, int alive, int status, int stop, int ended) {
  bool asked = false;
  for (;;) {
    std::array<pollfd, 5> watched{{{signals, POLLIN, 0},
                                   {ready, POLLIN, 0},
                                   {ended, POLLIN, 0},
                                   {alive, POLLIN, 0},
                                   {status, POLLIN, 0}}};
    poll(watched.data(), watched.size(), -1);
    if (watched[2].revents != 0) {
      return asked;
    }
    if (watched[1].revents != 0) {
      char byte = 0;
      [[maybe_unused]] const ssize_t count = read(ready, &byte, 1);
      tellServiceManager(byte == 'r' ? "READY=1\nSTATUS=running" : "READY=1\nSTATUS=waiting for the bus");
    }
    if (watched[3].revents != 0) {
      std::uint64_t times = 0;
      [[maybe_unused]] const ssize_t count = read(alive, &times, sizeof times);
      tellServiceManager("WATCHDOG=1");
    }
    if (watched[4].revents != 0) {
      tellServiceManager("STATUS=" + newestLine(status));
    }
    if (watched[0].revents != 0) {
      signalfd_siginfo taken{};
      [[maybe_unused]] const ssize_t count = read(signals, &taken, sizeof taken);
      if (asked) {
        _exit(kInterrupted);
      }
      asked = true;
      tellServiceManager("STOPPING=1");
      raise(stop);
    }
  }
}

/** The folder that holds bin, lib and share. */
std::filesystem::path installation() {
  std::error_code ignored;
  const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", ignored);
  return program.parent_path().parent_path();
}

}  // namespace

int runHostProcess(const std::string& library, const std::string& name) {
  const int signals = checked(signalDescriptor());
  const int stop = checked(eventfd(0, EFD_CLOEXEC));
  const int ended = checked(eventfd(0, EFD_CLOEXEC));
  const int alive = checked(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK));
  std::array<int, 2> ready{};
  checked(pipe2(ready.data(), O_CLOEXEC));
  std::array<int, 2> status{};
  // The service does not wait for a host that reads no more.
  checked(pipe2(status.data(), O_CLOEXEC | O_NONBLOCK));
  setenv("PRB_STOP_FD", std::to_string(stop).c_str(), 1);
  setenv("PRB_READY_FD", std::to_string(ready[1]).c_str(), 1);
  setenv("PRB_ALIVE_FD", std::to_string(alive).c_str(), 1);
  setenv("PRB_STATUS_FD", std::to_string(status[1]).c_str(), 1);
  const EntryFunction entry = loadEntry(library);
  std::thread service([&] {
    entry(name.c_str(), true);
    raise(ended);
  });
  const bool asked = attend(signals, ready[0], alive, status[0], stop, ended);
  service.join();
  return asked ? 0 : 1;
}

std::string defaultLibrary() {
  return (installation() / PR_SERVICE_LIBRARY).string();
}

std::string recommendedConfigurationFile() {
  return (installation() / "share" / "productionrules" / "recommended.conf").string();
}

}  // namespace fyn::productionrules
