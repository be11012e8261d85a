#pragma once

#include <optional>
#include <string>

#include "platform/LogSink.h"
#include "platform/MemoryPropertyStore.h"
#include "platform/virtual/VirtualTime.h"
#include "tools/replay/ReplayObserver.h"

namespace fyn::productionrules {

/**
 * A process that has just started, for the length of a replay: a virtual clock, no properties, no
 * configuration file, every process-wide state as at the start. The destructor puts the machine's own
 * environment back. One at a time in a process.
 */
class ReplayEnvironment final : private LogSink {
 public:
  /** `logLevel`: lines above it are neither built nor reported; 0 for none. */
  ReplayEnvironment(ReplayObserver& observer, int logLevel);
  ~ReplayEnvironment() override;
  ReplayEnvironment(const ReplayEnvironment&) = delete;
  ReplayEnvironment& operator=(const ReplayEnvironment&) = delete;

  VirtualTime& time() { return mTime; }
  MemoryPropertyStore& properties() { return mProperties; }

  /** Replaces the content of the configuration file. */
  void setConfiguration(std::string text) { mConfiguration = std::move(text); }

 private:
  void write(LogPriority priority, const char* tag, const char* text) override;

  ReplayObserver& mObserver;
  VirtualTime mTime;
  MemoryPropertyStore mProperties;
  std::optional<std::string> mConfiguration;
};

}  // namespace fyn::productionrules
