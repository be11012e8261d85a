#pragma once

#include "platform/Clock.h"
#include "platform/LogSink.h"
#include "platform/SystemProperties.h"
#include "platform/TextFile.h"

namespace fyn::productionrules {

/**
 * What the operating system gives to the whole process: clock, log, properties, files. There is one of each,
 * as on the device. Only the outermost layer (the entry function, a tool, a test) installs other ones; a
 * replaced object must outlive every thread that can still read it.
 *
 * Until something is installed: the machine's clock, a log on standard error, properties in memory, real
 * files.
 */
class SystemEnvironment {
 public:
  static Clock& clock();
  static LogSink& log();
  static PropertyStore& properties();
  static const TextFileReader& files();

  static void setClock(Clock* clock);
  static void setLog(LogSink* log);
  static void setProperties(PropertyStore* properties);
  static void setFiles(TextFileReader reader);

  /** Back to what stood at the start of the process. */
  static void reset();
};

/** The three process-wide times that limit how often something is sent again; all start at 0. */
struct ProcessTimes {
  /** Wall clock in seconds: the last periodic layout sent for debugging. */
  std::int64_t lastPeriodicSend = 0;
  /** Ticks: the last debug timer document. */
  std::uint32_t lastDebugTimerSend = 0;
  /** Ticks: the last periodic people count. */
  std::uint32_t lastPeopleCountSend = 0;
};

/** Touched only from the dispatch thread. A replay begins by assigning `{}`. */
ProcessTimes& processTimes();

}  // namespace fyn::productionrules
