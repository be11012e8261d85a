#pragma once

#include <sys/types.h>

#include <chrono>
#include <functional>
#include <map>
#include <string>
#include <thread>
#include <vector>

#include "platform/Mutex.h"
#include "tests/testing/ScratchFolder.h"

namespace fyn::productionrules::testing {

/** Polls until `condition` holds; false when it does not within `limit`. */
bool eventually(const std::function<bool()>& condition,
                std::chrono::milliseconds limit = std::chrono::seconds(20));

/** A port of 127.0.0.1 that nobody listens on now. */
int freePort();

/** Whether somebody listens on a port of 127.0.0.1. */
bool isListening(int port);

/** What is answered at a port of 127.0.0.1 to the request for a page, with its header; empty when nobody is
 * there. */
std::string httpAnswer(int port, const std::string& path);

/** Whether somebody listens on a socket in the file system. */
bool isListening(const std::string& path);

/** A program that a test runs. It is killed, if need be, when the object goes. */
class Process {
 public:
  /** `environment` is added to that of the test. */
  explicit Process(const std::vector<std::string>& command,
                   const std::map<std::string, std::string>& environment = {});
  ~Process();
  Process(const Process&) = delete;
  Process& operator=(const Process&) = delete;

  void signal(int number) const;
  pid_t id() const { return mPid; }

  /** Waits for its end and returns the exit status, or minus the number of the signal that killed it. */
  int wait();

  /** SIGKILL and wait. */
  void kill();

  /** The complete lines of standard output so far. */
  std::vector<std::string> outputLines() const;
  std::string errorText() const;

 private:
  void readAll(int descriptor, std::string Process::*into);

  pid_t mPid = -1;
  int mStatus = 0;
  mutable Mutex mMutex;
  std::string mOutput PR_GUARDED_BY(mMutex);
  std::string mError PR_GUARDED_BY(mMutex);
  std::vector<std::thread> mReaders;
};

/** Runs a program to its end; fails the test when its exit status is not 0. */
void runTool(const std::vector<std::string>& command);

}  // namespace fyn::productionrules::testing
