#pragma once

#include <deque>
#include <memory>
#include <string>
#include <thread>

#include "platform/Mutex.h"
#include "tests/linux/Processes.h"

namespace fyn::productionrules::testing {

/** A real broker on a port of its own on 127.0.0.1, which can be killed and started again there. */
class Broker {
 public:
  /** `settings` are further lines of its configuration. */
  explicit Broker(const std::string& settings = "allow_anonymous true");

  void start();
  void kill() { mProcess.reset(); }
  void signal(int number) const { mProcess->signal(number); }
  int port() const { return mPort; }
  std::string url(const std::string& room = "") const;

 private:
  bool lostItsPort() const;

  ScratchFolder mFolder;
  int mPort = 0;
  std::string mConfiguration;
  std::unique_ptr<Process> mProcess;
};

/** A real D-Bus on a socket of its own. */
class MessageBus {
 public:
  MessageBus();

  void start();
  void kill() { mProcess.reset(); }
  std::string address() const { return "unix:path=" + mFolder.file("socket"); }

  /** From the next `start` on the bus starts `command` when somebody asks for the owner of `name`. */
  void addService(const std::string& name, const std::string& command) const;

 private:
  ScratchFolder mFolder;
  std::string mConfiguration;
  std::unique_ptr<Process> mProcess;
};

/** The camera provider that prints its scenes, as a process on a D-Bus. */
class PrintingProvider {
 public:
  /** Returns when its name is on the bus. */
  explicit PrintingProvider(const MessageBus& bus);

  std::vector<std::string> scenes() const { return mProcess.outputLines(); }
  void signal(int number) const { mProcess.signal(number); }

 private:
  Process mProcess;
};

/** What a service manager listens on: a program's notices that it is ready, how it is doing or that it stops.
 */
class NotifySocket {
 public:
  NotifySocket();
  ~NotifySocket();
  NotifySocket(const NotifySocket&) = delete;
  NotifySocket& operator=(const NotifySocket&) = delete;

  std::string path() const { return mFolder.file("notify"); }

  /** The next notice that begins so; empty when none comes. */
  std::string next(const std::string& beginning = "");

 private:
  void receive();

  ScratchFolder mFolder;
  const int mSocket;
  Mutex mMutex;
  ConditionVariable mCame;
  std::deque<std::string> mNotices PR_GUARDED_BY(mMutex);
  std::thread mReader;
};

/** A certificate authority for one test, with certificates for a broker on 127.0.0.1 and for a client. */
class ThrowawayAuthority {
 public:
  ThrowawayAuthority();

  std::string caFile() const { return mFolder.file("ca.pem"); }
  std::string certificate(const std::string& of) const { return mFolder.file(of + ".pem"); }
  std::string key(const std::string& of) const { return mFolder.file(of + ".key"); }

 private:
  void sign(const std::string& name, const std::string& extensions);

  ScratchFolder mFolder;
};

}  // namespace fyn::productionrules::testing
