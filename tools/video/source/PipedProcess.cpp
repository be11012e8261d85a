#include "tools/video/source/PipedProcess.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>

#include "tools/base/UsageError.h"

namespace fyn::productionrules::video {

namespace {

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  pointers.reserve(texts.size() + 1);
  for (std::string& text : texts) {
    pointers.push_back(text.data());
  }
  pointers.push_back(nullptr);
  return pointers;
}

pid_t start(std::vector<std::string> command, int itsEnd, PipedProcess::Pipe pipe) {
  const bool reads = pipe == PipedProcess::Pipe::toInput;
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, itsEnd, reads ? STDIN_FILENO : STDOUT_FILENO);
  posix_spawn_file_actions_addopen(&actions, reads ? STDOUT_FILENO : STDIN_FILENO, "/dev/null",
                                   reads ? O_WRONLY : O_RDONLY, 0);
  posix_spawnattr_t attributes;
  posix_spawnattr_init(&attributes);
  sigset_t none;
  sigemptyset(&none);
  posix_spawnattr_setsigmask(&attributes, &none);
  posix_spawnattr_setpgroup(&attributes, 0);
  posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGMASK);
  pid_t pid = -1;
  const int result =
      posix_spawnp(&pid, command.front().c_str(), &actions, &attributes, pointersTo(command).data(), environ);
  posix_spawnattr_destroy(&attributes);
  posix_spawn_file_actions_destroy(&actions);
  if (result != 0) {
    throw UsageError(command.front() + " cannot be started: " + std::strerror(result));
  }
  return pid;
}

}  // namespace

PipedProcess::PipedProcess(const std::vector<std::string>& command, Pipe pipe) : mPipe(pipe) {
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) {
    throw UsageError("no pipe to " + command.front() + ": " + std::strerror(errno));
  }
  const auto [reading, writing] = ends;
  const bool reads = pipe == Pipe::toInput;
  const int itsEnd = reads ? reading : writing;
  mDescriptor = reads ? writing : reading;
  // A whole picture at a time would be best; the kernel grants what it allows.
  fcntl(mDescriptor, F_SETPIPE_SZ, 1 << 20);
  // A program that has died is an error to report, not a reason to die as well.
  signal(SIGPIPE, SIG_IGN);
  try {
    mPid = start(command, itsEnd, pipe);
  } catch (const UsageError&) {
    close(reading);
    close(writing);
    throw;
  }
  close(itsEnd);
}

PipedProcess::~PipedProcess() {
  finish();
}

int PipedProcess::finish() {
  if (mDescriptor >= 0) {
    close(mDescriptor);
    mDescriptor = -1;
    if (mPipe == Pipe::fromOutput) {
      // It may wait for a device that gives nothing.
      kill(mPid, SIGKILL);
    }
    while (waitpid(mPid, &mStatus, 0) < 0 && errno == EINTR) {
    }
  }
  return mStatus;
}

}  // namespace fyn::productionrules::video
