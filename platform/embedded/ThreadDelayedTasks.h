#pragma once

#include "platform/DelayedTasks.h"

namespace fyn::productionrules {

/** Runs each task on a detached thread of its own, which sleeps first. */
class ThreadDelayedTasks final : public DelayedTasks {
 public:
  void runAfter(std::chrono::milliseconds delay, std::function<void()> task) override;
};

}  // namespace fyn::productionrules
