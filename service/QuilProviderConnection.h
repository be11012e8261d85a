#pragma once

#include <memory>
#include <string>

#include "platform/Mutex.h"
#include "platform/Platform.h"

namespace fyn::productionrules {

/**
 * The service's handle of the camera provider. It is looked up without waiting, watched for its death and
 * looked up again, once, a second after it has died or failed; there is deliberately no loop of attempts.
 *
 * The dispatch thread, the provider's death notification and the delayed attempts share one handle under a
 * lock, and the delayed attempts hold this object weakly, so they may outlive the service.
 */
class QuilProviderConnection final : public std::enable_shared_from_this<QuilProviderConnection> {
 public:
  explicit QuilProviderConnection(const Platform& platform);

  /** Looks the provider up and registers for its death; false when there is none or it has died already. */
  bool connectToQuilProvider();

  /** Starts one attempt to connect, a second from now. Throws std::system_error when it can't be started. */
  void rescheduleQuilProviderConnection();

  /** Hands a scene document over; reports a missing provider, drops one that fails and reschedules. */
  void sendScene(const std::string& document);

  /** Gives the handle up for good. */
  void close();

 private:
  class PRBDeathRecipient;

  /** Replaces the handle; the registration with the old one is taken back. False once closed. */
  bool replaceProvider(const std::shared_ptr<IQuilCameraProvider>& provider);

  /** Gives `failed` up, unless a delayed attempt has put a new handle in its place meanwhile. */
  void dropProvider(const std::shared_ptr<IQuilCameraProvider>& failed);
  void unlink(const std::shared_ptr<IQuilCameraProvider>& old);
  std::shared_ptr<IQuilCameraProvider> provider() const;
  void serviceDied();

  const std::shared_ptr<ICameraProviders> mProviders;
  const std::shared_ptr<DelayedTasks> mTasks;
  std::ostream& mStandardOutput;

  mutable Mutex mMutex;
  std::shared_ptr<IQuilCameraProvider> mProvider PR_GUARDED_BY(mMutex);
  std::shared_ptr<DeathRecipient> mDeathRecipient PR_GUARDED_BY(mMutex);
  bool mClosed PR_GUARDED_BY(mMutex) = false;
};

}  // namespace fyn::productionrules
