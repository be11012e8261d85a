#pragma once

#include <chrono>
#include <functional>

namespace fyn::productionrules {

/** Runs work later, away from the dispatch thread. */
class DelayedTasks {
 public:
  virtual ~DelayedTasks() = default;

  /**
   * Runs `task` once after `delay`. The task may outlive its caller. Throws std::system_error with the text
   * "thread constructor failed" when it can't be started.
   */
  virtual void runAfter(std::chrono::milliseconds delay, std::function<void()> task) = 0;
};

}  // namespace fyn::productionrules
