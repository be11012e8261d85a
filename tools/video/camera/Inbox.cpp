#include "tools/video/camera/Inbox.h"

#include <utility>

namespace fyn::productionrules::video {

namespace {

constexpr std::size_t kMostArrivals = 1000;

}  // namespace

void Inbox::put(Arrival arrival) {
  {
    const MutexLock lock(mMutex);
    if (mArrivals.size() == kMostArrivals) {
      mArrivals.pop_front();
    }
    mArrivals.push_back(std::move(arrival));
  }
  mFilled.notifyOne();
}

std::optional<Arrival> Inbox::take(std::chrono::milliseconds limit) {
  MutexLock lock(mMutex);
  if (!mFilled.waitFor(lock, limit, [this]() PR_REQUIRES(mMutex) { return !mArrivals.empty(); })) {
    return std::nullopt;
  }
  Arrival first = std::move(mArrivals.front());
  mArrivals.pop_front();
  return first;
}

}  // namespace fyn::productionrules::video
