#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <vector>

#include "platform/CameraProvider.h"
#include "platform/Mutex.h"

namespace fyn::productionrules {

/** Who is to be told of one provider's death. Every backend's provider holds one. */
class DeathRecipients {
 public:
  /** False when the provider has died already. */
  bool link(const std::shared_ptr<DeathRecipient>& recipient, std::uint64_t cookie);

  /** Waits for a call of the recipient that is under way, unless it comes from within that call. */
  void unlink(const std::shared_ptr<DeathRecipient>& recipient);

  /** Tells everyone, once; a second call does nothing. */
  void announceDeath(const std::weak_ptr<IQuilCameraProvider>& who);

  bool isDead() const { return mDead.load(); }

 private:
  struct Registration {
    std::shared_ptr<DeathRecipient> recipient;
    std::uint64_t cookie;
  };

  // Recursive and held during the calls, so that `unlink` from another thread waits and from the call does
  // not.
  RecursiveMutex mMutex;
  std::vector<Registration> mRegistrations PR_GUARDED_BY(mMutex);
  std::atomic<bool> mDead{false};
};

}  // namespace fyn::productionrules
