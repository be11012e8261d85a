#include "platform/embedded/ThreadDelayedTasks.h"

#include <system_error>
#include <thread>
#include <utility>

#include "platform/ServiceStateScope.h"

namespace fyn::productionrules {

void ThreadDelayedTasks::runAfter(std::chrono::milliseconds delay, std::function<void()> task) {
  try {
    std::thread(inThisServiceState([delay, work = std::move(task)] {
      std::this_thread::sleep_for(delay);
      work();
    })).detach();
  } catch (const std::system_error& fault) {
    // The standard libraries word this differently; the text is part of the service's behaviour.
    throw std::system_error(fault.code(), "thread constructor failed");
  }
}

}  // namespace fyn::productionrules
