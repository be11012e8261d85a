#include "tests/linux/Processes.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <signal.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstring>
#include <sstream>
#include <stdexcept>

namespace fyn::productionrules::testing {

namespace {

sockaddr_in loopback(int port) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<std::uint16_t>(port));
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  return address;
}

template <typename Address>
bool canConnect(const Address& address) {
  const auto* const base = reinterpret_cast<const sockaddr*>(&address);
  const int client = socket(base->sa_family, SOCK_STREAM | SOCK_CLOEXEC, 0);
  const bool connected = connect(client, base, sizeof address) == 0;
  close(client);
  return connected;
}

std::vector<std::string> environmentWith(const std::map<std::string, std::string>& added) {
  std::vector<std::string> all;
  for (char** entry = environ; *entry != nullptr; ++entry) {
    const std::string text = *entry;
    if (added.count(text.substr(0, text.find('='))) == 0) {
      all.push_back(text);
    }
  }
  for (const auto& [name, value] : added) {
    all.push_back(name + "=" + value);
  }
  return all;
}

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  for (std::string& text : texts) {
    pointers.push_back(text.data());
  }
  pointers.push_back(nullptr);
  return pointers;
}

}  // namespace

bool eventually(const std::function<bool()>& condition, std::chrono::milliseconds limit) {
  const auto end = std::chrono::steady_clock::now() + limit;
  while (!condition()) {
    if (std::chrono::steady_clock::now() > end) {
      return false;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  return true;
}

int freePort() {
  const int listener = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address = loopback(0);
  socklen_t length = sizeof address;
  bind(listener, reinterpret_cast<sockaddr*>(&address), length);
  getsockname(listener, reinterpret_cast<sockaddr*>(&address), &length);
  close(listener);
  return ntohs(address.sin_port);
}

bool isListening(int port) {
  return canConnect(loopback(port));
}

std::string httpAnswer(int port, const std::string& path) {
  const sockaddr_in address = loopback(port);
  const int client = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  std::string answer;
  if (connect(client, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0) {
    const std::string request = "GET " + path + " HTTP/1.0\r\n\r\n";
    send(client, request.data(), request.size(), MSG_NOSIGNAL);
    std::array<char, 4096> part{};
    for (ssize_t length = 0; (length = recv(client, part.data(), part.size(), 0)) > 0;) {
      answer.append(part.data(), static_cast<std::size_t>(length));
    }
  }
  close(client);
  return answer;
}

bool isListening(const std::string& path) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  std::strncpy(address.sun_path, path.c_str(), sizeof address.sun_path - 1);
  return canConnect(address);
}

Process::Process(const std::vector<std::string>& command,
                 const std::map<std::string, std::string>& environment) {
  std::array<int, 2> output{};
  std::array<int, 2> error{};
  if (pipe2(output.data(), O_CLOEXEC) != 0 || pipe2(error.data(), O_CLOEXEC) != 0) {
    throw std::runtime_error("no pipes");
  }
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, output[1], STDOUT_FILENO);
  posix_spawn_file_actions_adddup2(&actions, error[1], STDERR_FILENO);
  std::vector<std::string> arguments = command;
  std::vector<std::string> variables = environmentWith(environment);
  const int result = posix_spawnp(&mPid, command.front().c_str(), &actions, nullptr,
                                  pointersTo(arguments).data(), pointersTo(variables).data());
  posix_spawn_file_actions_destroy(&actions);
  close(output[1]);
  close(error[1]);
  if (result != 0) {
    close(output[0]);
    close(error[0]);
    throw std::runtime_error(command.front() + " cannot be started: " + std::strerror(result));
  }
  mReaders.emplace_back([this, from = output[0]] { readAll(from, &Process::mOutput); });
  mReaders.emplace_back([this, from = error[0]] { readAll(from, &Process::mError); });
}

Process::~Process() {
  kill();
}

void Process::readAll(int descriptor, std::string Process::*into) {
  std::array<char, 4096> chunk{};
  ssize_t count = 0;
  while ((count = read(descriptor, chunk.data(), chunk.size())) > 0) {
    const MutexLock lock(mMutex);
    (this->*into).append(chunk.data(), static_cast<std::size_t>(count));
  }
  close(descriptor);
}

void Process::signal(int number) const {
  if (mPid > 0) {
    ::kill(mPid, number);
  }
}

int Process::wait() {
  if (mPid > 0) {
    waitpid(mPid, &mStatus, 0);
    mPid = -1;
    for (std::thread& reader : mReaders) {
      reader.join();
    }
  }
  return WIFEXITED(mStatus) ? WEXITSTATUS(mStatus) : -WTERMSIG(mStatus);
}

void Process::kill() {
  signal(SIGKILL);
  wait();
}

std::vector<std::string> Process::outputLines() const {
  const MutexLock lock(mMutex);
  std::vector<std::string> lines;
  std::istringstream text(mOutput.substr(0, mOutput.rfind('\n') + 1));
  for (std::string line; std::getline(text, line);) {
    lines.push_back(line);
  }
  return lines;
}

std::string Process::errorText() const {
  const MutexLock lock(mMutex);
  return mError;
}

void runTool(const std::vector<std::string>& command) {
  Process tool(command);
  ASSERT_EQ(tool.wait(), 0) << command.front() << ": " << tool.errorText();
}

}  // namespace fyn::productionrules::testing
