#pragma once

#include <cstddef>
#include <functional>
#include <string>

namespace fyn::productionrules {

/** How the tasks are run. */
struct WorkerOptions {
  /** Child processes at a time; 0 for one per processor. */
  unsigned workers = 0;
  /** Asked often; true stops the children and gives up what is not finished. May be empty. */
  std::function<bool()> isInterrupted;
};

/** "2": the processors of this machine, at least 1. */
unsigned processorCount();

/**
 * Runs `task(i)` for i = 0 .. count-1, each in a child process of its own (a replay owns process-wide state),
 * and hands its text to `done(i, text)` in the calling process, in the order in which tasks end. A UsageError
 * of a task is raised again here, any other failure as std::runtime_error; the other children are then
 * stopped. The calling process must have one thread only. Returns false when it was interrupted.
 */
bool runInWorkers(std::size_t count, const std::function<std::string(std::size_t index)>& task,
                  const std::function<void(std::size_t index, const std::string& text)>& done,
                  const WorkerOptions& options = {});

}  // namespace fyn::productionrules
