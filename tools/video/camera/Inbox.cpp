#include "tools/video/camera/Inbox.h"

#include <utility>

namespace fyn::productionrules::video {

void Inbox::put(Arrival arrival) {
  {
    const std::lock_guard lock(mMutex);
    mArrivals.push_back(std::move(arrival));
  }
  mFilled.notify_one();
}

std::optional<Arrival> Inbox::take(std::chrono::milliseconds limit) {
  std::unique_lock lock(mMutex);
  if (!mFilled.wait_for(lock, limit, [this] { return !mArrivals.empty(); })) {
    return std::nullopt;
  }
  Arrival first = std::move(mArrivals.front());
  mArrivals.pop_front();
  return first;
}

}  // namespace fyn::productionrules::video
