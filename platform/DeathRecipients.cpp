#include "platform/DeathRecipients.h"

#include <algorithm>

namespace fyn::productionrules {

bool DeathRecipients::link(const std::shared_ptr<DeathRecipient>& recipient, std::uint64_t cookie) {
  const MutexLock lock(mMutex);
  if (mDead || !recipient) {
    return false;
  }
  mRegistrations.push_back({recipient, cookie});
  return true;
}

void DeathRecipients::unlink(const std::shared_ptr<DeathRecipient>& recipient) {
  const MutexLock lock(mMutex);
  const auto matches = [&](const Registration& entry) { return entry.recipient == recipient; };
  mRegistrations.erase(std::remove_if(mRegistrations.begin(), mRegistrations.end(), matches),
                       mRegistrations.end());
}

void DeathRecipients::announceDeath(const std::weak_ptr<IQuilCameraProvider>& who) {
  const MutexLock lock(mMutex);
  mDead = true;
  while (!mRegistrations.empty()) {
    const Registration next = mRegistrations.front();
    mRegistrations.erase(mRegistrations.begin());
    next.recipient->serviceDied(next.cookie, who);
  }
}

}  // namespace fyn::productionrules
