#pragma once

namespace fyn::productionrules {

/** Priorities of the device's log, with its own numbers. */
enum class LogPriority : int { debug = 3, info = 4, warning = 5, error = 6 };

/** Where log lines end. Called from any thread; an implementation locks for itself. */
class LogSink {
 public:
  virtual ~LogSink() = default;

  /** Writes one line. `tag` and `text` are never null; `text` may end in a newline that the format asked for,
   * and may hold whatever a sender wrote: `cleanLogText` makes it fit for readers.
   */
  virtual void write(LogPriority priority, const char* tag, const char* text) = 0;
};

}  // namespace fyn::productionrules
