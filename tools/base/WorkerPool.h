#pragma once

#include <cstddef>
#include <functional>

namespace fyn::productionrules {

/** Asked by a task, on its thread: true when nobody waits for its result any more, so that it may end early.
 */
using GivenUp = std::function<bool()>;

/** How the tasks are run. */
struct WorkerOptions {
  /** Threads at a time; 0 for one per processor. */
  unsigned workers = 0;
  /** Asked often, on the calling thread; true gives up what is not finished. May be empty. */
  std::function<bool()> isInterrupted;
};

/**
 * Runs `task(i, isGivenUp)` for i = 0 .. count-1 on threads, and `done(i)` on the calling thread for each
 * that has ended and was not given up, in the order in which they end. A task that throws gives up all tasks
 * after it; of several the first one's exception is thrown here, so the same fault is told however the
 * threads run. Returns, or throws, when no task runs any more. False when an interruption has left tasks
 * undone.
 */
bool runInWorkers(std::size_t count,
                  const std::function<void(std::size_t index, const GivenUp& isGivenUp)>& task,
                  const std::function<void(std::size_t index)>& done, const WorkerOptions& options = {});

}  // namespace fyn::productionrules
