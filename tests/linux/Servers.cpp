#include "tests/linux/Servers.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <array>
#include <cstring>

#include "tests/testing/Folders.h"

namespace fyn::productionrules::testing {

namespace {

/** Debian keeps servers in a folder that a user's PATH may lack. */
std::string serverProgram(const std::string& name) {
  for (const char* folder : {"/usr/sbin/", "/usr/local/sbin/", "/usr/bin/"}) {
    if (access((folder + name).c_str(), X_OK) == 0) {
      return folder + name;
    }
  }
  return name;
}

}  // namespace

Broker::Broker(const std::string& settings) {
  // Started by root it would give up its rights and could not read the files of this test any more.
  const std::string user = geteuid() == 0 ? "user root\n" : "";
  // Somebody else may take a free port before the broker does.
  for (int attempt = 0; attempt < 5 && !mProcess; ++attempt) {
    mPort = freePort();
    mConfiguration = mFolder.write("mosquitto.conf", user + "listener " + std::to_string(mPort) +
                                                         " 127.0.0.1\npersistence false\n" + settings + "\n");
    start();
    if (lostItsPort()) {
      mProcess.reset();
    }
  }
  EXPECT_TRUE(mProcess) << "no port for a broker";
}

bool Broker::lostItsPort() const {
  return mProcess->errorText().find("Address already in use") != std::string::npos;
}

void Broker::start() {
  // Before the next one, which else finds its port taken.
  kill();
  mProcess =
      std::make_unique<Process>(std::vector<std::string>{serverProgram("mosquitto"), "-c", mConfiguration});
  ASSERT_TRUE(eventually([&] { return lostItsPort() || isListening(mPort); })) << mProcess->errorText();
}

std::string Broker::url(const std::string& room) const {
  return "mqtt://127.0.0.1:" + std::to_string(mPort) + (room.empty() ? "" : "/" + room);
}

MessageBus::MessageBus() {
  mConfiguration = mFolder.write(
      "bus.conf",
      "<busconfig><type>session</type><listen>" + address() + "</listen><servicedir>" + mFolder.file("") +
          "</servicedir><policy context=\"default\"><allow send_destination=\"*\" eavesdrop=\"true\"/>"
          "<allow eavesdrop=\"true\"/><allow own=\"*\"/></policy></busconfig>\n");
  start();
}

void MessageBus::start() {
  kill();
  unlink(mFolder.file("socket").c_str());
  mProcess = std::make_unique<Process>(std::vector<std::string>{
      serverProgram("dbus-daemon"), "--nofork", "--nopidfile", "--config-file=" + mConfiguration});
  ASSERT_TRUE(eventually([&] { return isListening(mFolder.file("socket")); })) << mProcess->errorText();
}

void MessageBus::addService(const std::string& name, const std::string& command) const {
  mFolder.write(name + ".service", "[D-BUS Service]\nName=" + name + "\nExec=" + command + "\n");
}

PrintingProvider::PrintingProvider(const MessageBus& bus)
    : mProcess({programFolder() + "/printing-camera-provider", "--bus", bus.address()}) {
  const auto serves = [&] { return mProcess.errorText().find("serving") != std::string::npos; };
  EXPECT_TRUE(eventually(serves)) << mProcess.errorText();
}

NotifySocket::NotifySocket() : mSocket(socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0)) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  std::strncpy(address.sun_path, path().c_str(), sizeof address.sun_path - 1);
  EXPECT_EQ(bind(mSocket, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
  mReader = std::thread([this] { receive(); });
}

NotifySocket::~NotifySocket() {
  shutdown(mSocket, SHUT_RDWR);
  mReader.join();
  close(mSocket);
}

// All the time: only a few notices fit into a socket, and a program waits when they do not.
void NotifySocket::receive() {
  std::array<char, 512> text{};
  for (;;) {
    const ssize_t length = recv(mSocket, text.data(), text.size(), 0);
    if (length <= 0) {
      return;
    }
    const MutexLock lock(mMutex);
    mNotices.emplace_back(text.data(), static_cast<std::size_t>(length));
    mCame.notifyAll();
  }
}

std::string NotifySocket::next(const std::string& beginning) {
  std::string found;
  const auto came = [this, &beginning, &found]() PR_REQUIRES(mMutex) {
    while (found.empty() && !mNotices.empty()) {
      if (mNotices.front().rfind(beginning, 0) == 0) {
        found = mNotices.front();
      }
      mNotices.pop_front();
    }
    return !found.empty();
  };
  MutexLock lock(mMutex);
  mCame.waitFor(lock, std::chrono::seconds(20), came);
  return found;
}

ThrowawayAuthority::ThrowawayAuthority() {
  runTool({"openssl", "req", "-x509", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:prime256v1", "-nodes",
           "-days", "2", "-subj", "/CN=test authority", "-keyout", key("ca"), "-out", caFile()});
  sign("broker", "subjectAltName=IP:127.0.0.1\n");
  sign("client", "extendedKeyUsage=clientAuth\n");
}

void ThrowawayAuthority::sign(const std::string& name, const std::string& extensions) {
  const std::string request = mFolder.file(name + ".csr");
  runTool({"openssl", "req", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:prime256v1", "-nodes", "-subj",
           "/CN=test " + name, "-keyout", key(name), "-out", request});
  runTool({"openssl", "x509", "-req", "-days", "2", "-in", request, "-CA", caFile(), "-CAkey", key("ca"),
           "-CAcreateserial", "-extfile", mFolder.write(name + ".ext", extensions), "-out",
           certificate(name)});
}

}  // namespace fyn::productionrules::testing
