#pragma once

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>

#include "platform/Mutex.h"

namespace fyn::productionrules {

/** How a service is doing, for whoever watches over it from outside. The service writes it, any thread reads
 * it. */
class ServiceHealth {
 public:
  /** Cycles are counted by how long they took, up to each of these; a last group takes the longer ones. */
  static constexpr std::array<std::chrono::microseconds, 9> kCycleLimits{
      {std::chrono::microseconds(50), std::chrono::microseconds(100), std::chrono::microseconds(250),
       std::chrono::microseconds(500), std::chrono::milliseconds(1), std::chrono::microseconds(2500),
       std::chrono::milliseconds(5), std::chrono::milliseconds(10), std::chrono::milliseconds(33)}};

  struct Reading {
    /** The tracking mode's text. */
    std::string mode;
    /** Whether it holds a camera provider. */
    bool provider = false;
    /** How often it has got one. */
    std::uint64_t providerConnections = 0;
    /** Whether the bus is connected, and how often it became so. */
    bool bus = false;
    std::uint64_t busConnections = 0;
    /** Vision results handled since the start. */
    std::uint64_t results = 0;
    /** Messages dropped since the start because they were too large or too many. */
    std::uint64_t droppedMessages = 0;
    /** Messages in the queue. */
    std::size_t waitingMessages = 0;
    /** Pictures published since the start, by what they show. */
    std::map<std::string, std::uint64_t> pictures;
    /** Vision results by the time that one took from the queue to the end of its effects, and all that time.
     */
    std::array<std::uint64_t, kCycleLimits.size() + 1> cycles{};
    std::chrono::nanoseconds cycleTime{0};
  };

  Reading read() const {
    const MutexLock lock(mMutex);
    Reading now = mNow;
    now.waitingMessages = mWaitingMessages;
    return now;
  }
  void setMode(const std::string& mode) {
    const MutexLock lock(mMutex);
    mNow.mode = mode;
  }
  void setProvider(bool held) {
    const MutexLock lock(mMutex);
    mNow.providerConnections += held && !mNow.provider ? 1 : 0;
    mNow.provider = held;
  }
  void setBus(bool connected) {
    const MutexLock lock(mMutex);
    mNow.busConnections += connected && !mNow.bus ? 1 : 0;
    mNow.bus = connected;
  }
  void setWaitingMessages(std::size_t messages) { mWaitingMessages = messages; }
  void countResult() {
    const MutexLock lock(mMutex);
    ++mNow.results;
  }
  void countDropped(std::size_t messages) {
    const MutexLock lock(mMutex);
    mNow.droppedMessages += messages;
  }
  void countPicture(const std::string& shows) {
    const MutexLock lock(mMutex);
    ++mNow.pictures[shows];
  }
  void countCycle(std::chrono::nanoseconds time) {
    const auto group =
        std::lower_bound(kCycleLimits.begin(), kCycleLimits.end(), time) - kCycleLimits.begin();
    const MutexLock lock(mMutex);
    ++mNow.cycles[static_cast<std::size_t>(group)];
    mNow.cycleTime += time;
  }

 private:
  mutable Mutex mMutex;
  Reading mNow PR_GUARDED_BY(mMutex);
  /** Apart, because it changes with every message. */
  std::atomic<std::size_t> mWaitingMessages{0};
};

}  // namespace fyn::productionrules
