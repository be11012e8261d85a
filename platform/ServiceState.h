#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>

#include "platform/Clock.h"
#include "platform/LogLevels.h"
#include "platform/LogSink.h"
#include "platform/Mutex.h"
#include "platform/PropertyStore.h"
#include "platform/Replaceable.h"
#include "platform/TextFile.h"

namespace fyn::productionrules {

/** The three times that limit how often something is sent again; all start at 0. */
struct ProcessTimes {
  /** Wall clock in seconds: the last periodic layout sent for debugging. */
  std::int64_t lastPeriodicSend = 0;
  /** Ticks: the last debug timer document. */
  std::uint32_t lastDebugTimerSend = 0;
  /** Ticks: the last periodic people count. */
  std::uint32_t lastPeopleCountSend = 0;
};

/**
 * All that a service keeps outside its own objects: what the operating system gives it (clock, log,
 * properties, files), the log level, the times of what is sent periodically, and one object of each type that
 * a higher layer keeps here (`part`). At first: the machine's clock, a log on standard error at info level,
 * properties in memory, real files.
 *
 * The process has one, which is never destroyed, because a detached thread may log while the process ends. A
 * tool or a test that wants a service to start afresh gives a new one, made by std::make_shared, to its own
 * thread (ServiceStateScope).
 */
class ServiceState : public std::enable_shared_from_this<ServiceState> {
 public:
  ServiceState();
  ServiceState(const ServiceState&) = delete;
  ServiceState& operator=(const ServiceState&) = delete;

  /** That of this thread when it has one of its own, else that of the process. */
  static ServiceState& current() { return tOwn != nullptr ? *tOwn : ofProcess(); }

  Clock& clock() const { return mClock.get(); }
  LogSink& log() const { return mLog.get(); }
  PropertyStore& properties() const { return mProperties.get(); }
  const TextFileReader& files() const { return mFiles.get(); }

  void setClock(std::shared_ptr<Clock> clock) { mClock.set(std::move(clock)); }
  /** Lines above the level `ceiling` are dropped whatever the log level. */
  void setLog(std::shared_ptr<LogSink> log, int ceiling = LogLevels::kDebugLevel);
  void setProperties(std::shared_ptr<PropertyStore> properties) { mProperties.set(std::move(properties)); }
  void setFiles(TextFileReader reader);

  int logLevel() const { return mLogLevel.load(std::memory_order_relaxed); }
  void setLogLevel(int level) { mLogLevel.store(level, std::memory_order_relaxed); }
  bool isLogged(int level) const {
    return logLevel() >= level && mLogCeiling.load(std::memory_order_relaxed) >= level;
  }

  /** The one object of this type, made on first use. It lives as long as this. */
  template <typename Part>
  Part& part() {
    static const std::size_t place = newPlace();
    void* const made = mParts[place].made.load(std::memory_order_acquire);
    return *static_cast<Part*>(made != nullptr ? made : make(place, []() -> std::shared_ptr<void> {
      return std::make_shared<Part>();
    }));
  }

  /** Touched only from the dispatch thread. */
  ProcessTimes times;

 private:
  friend class ServiceStateScope;

  struct PartPlace {
    std::atomic<void*> made{nullptr};
    std::shared_ptr<void> owner;
  };
  static constexpr std::size_t kMostParts = 8;

  static ServiceState& ofProcess();
  static std::size_t newPlace();
  void* make(std::size_t place, std::shared_ptr<void> (*maker)());

  static inline thread_local ServiceState* tOwn = nullptr;

  Replaceable<Clock> mClock;
  Replaceable<LogSink> mLog;
  Replaceable<PropertyStore> mProperties;
  Replaceable<const TextFileReader> mFiles;
  std::atomic<int> mLogLevel{LogLevels::kInfoLevel};
  std::atomic<int> mLogCeiling{LogLevels::kDebugLevel};
  // Making a part may log, and what takes the line may want another part.
  RecursiveMutex mMaking;
  std::array<PartPlace, kMostParts> mParts;
};

}  // namespace fyn::productionrules
