#include "platform/virtual/VirtualTime.h"

#include <utility>

namespace fyn::productionrules {

void VirtualTime::runAfter(std::chrono::milliseconds delay, std::function<void()> task) {
  mTasks.emplace(mNow + static_cast<std::uint64_t>(delay.count()), std::move(task));
}

void VirtualTime::advanceTo(std::uint64_t time) {
  while (!mTasks.empty() && mTasks.begin()->first <= time) {
    auto due = mTasks.extract(mTasks.begin());
    mNow = due.key();
    due.mapped()();
  }
  mNow = time;
}

}  // namespace fyn::productionrules
