#pragma once

#include <memory>
#include <string>

#include "platform/Mutex.h"
#include "platform/Platform.h"

namespace fyn::productionrules {

/**
 * The service's handle of the camera provider. It is looked up without waiting, watched for its death and
 * looked up again, once, a second after it has died or failed or the platform has said that it is there; one
 * that was announced is shown the current scene. There is deliberately no loop of attempts.
 *
 * The dispatch thread, the notifications of the platform and the delayed attempts share one handle under a
 * lock. Notifications and attempts hold this object weakly: they may outlive the service, and no thread of
 * the platform ever destroys it.
 */
class QuilProviderConnection final : public std::enable_shared_from_this<QuilProviderConnection> {
 public:
  explicit QuilProviderConnection(const Platform& platform);

  /** From now on a provider that appears is looked up a second later and shown the last scene. */
  void listenToAppearances();

  /** Looks the provider up and registers for its death; false when there is none or it has died already. */
  bool connectToQuilProvider();

  /** Starts one attempt to connect, a second from now. Throws std::system_error when it can't be started. */
  void rescheduleQuilProviderConnection();

  /** Hands a scene document over; reports a missing provider, drops one that fails and reschedules. Waits
   * while another thread hands one over: documents arrive one at a time, the newest last. */
  void sendScene(const std::string& document);

  /** Gives the handle up for good. */
  void close();

 private:
  class PRBDeathRecipient;

  /** Starts attempts to connect from any thread, also when the connection has gone. */
  struct Attempts {
    std::shared_ptr<DelayedTasks> tasks;
    std::weak_ptr<QuilProviderConnection> connection;

    /** Runs `attempt` a second from now, unless the connection has gone by then. */
    void later(void (*attempt)(QuilProviderConnection& connection)) const;
    /** The same for a thread of the platform, where nobody above would report that it can't be started. */
    void laterOrReport(const char* who, void (*attempt)(QuilProviderConnection& connection)) const;
  };
  Attempts attempts() { return {mTasks, weak_from_this()}; }
  static void connect(QuilProviderConnection& connection);
  static void connectAndShowLastScene(QuilProviderConnection& connection);

  /** Gives the provider the last scene. */
  void handOver() PR_REQUIRES(mSceneMutex);

  /** Replaces the handle; the registration with the old one is taken back. False once closed. */
  bool replaceProvider(const std::shared_ptr<IQuilCameraProvider>& provider);

  /** Gives `failed` up, unless a delayed attempt has put a new handle in its place meanwhile. */
  void dropProvider(const std::shared_ptr<IQuilCameraProvider>& failed);
  void unlink(const std::shared_ptr<IQuilCameraProvider>& old);
  std::shared_ptr<IQuilCameraProvider> provider() const;

  const std::shared_ptr<ICameraProviders> mProviders;
  const std::shared_ptr<DelayedTasks> mTasks;
  const std::shared_ptr<ServiceHealth> mHealth;
  std::ostream& mStandardOutput;

  /** Held during a call of the provider, so that an older scene never follows a newer one. */
  Mutex mSceneMutex;
  /** The last scene published. */
  std::string mScene PR_GUARDED_BY(mSceneMutex);

  mutable Mutex mMutex;
  std::shared_ptr<IQuilCameraProvider> mProvider PR_GUARDED_BY(mMutex);
  std::shared_ptr<DeathRecipient> mDeathRecipient PR_GUARDED_BY(mMutex);
  bool mClosed PR_GUARDED_BY(mMutex) = false;
};

}  // namespace fyn::productionrules
