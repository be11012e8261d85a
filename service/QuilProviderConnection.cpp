#include "service/QuilProviderConnection.h"

#include <chrono>
#include <exception>
#include <iostream>
#include <utility>

#include "platform/VisionSettings.h"

namespace fyn::productionrules {

namespace {

constexpr const char* kTag = "ProductionRulesIPCService";
constexpr std::chrono::milliseconds kReconnectDelay{1000};

}  // namespace

class QuilProviderConnection::PRBDeathRecipient final : public DeathRecipient {
 public:
  PRBDeathRecipient(Attempts attempts, std::shared_ptr<ServiceHealth> health, std::ostream& standardOutput)
      : mAttempts(std::move(attempts)), mHealth(std::move(health)), mStandardOutput(standardOutput) {}

  void serviceDied(std::uint64_t /*cookie*/, const std::weak_ptr<IQuilCameraProvider>& /*who*/) override {
    if (mAttempts.connection.expired()) {
      return;
    }
    mHealth->setProvider(false);
    PRB_LOGI(kTag, "%s: QuilProvider service died", "serviceDied");
    mStandardOutput << "serviceDied: QuilProvider service died\n" << std::flush;
    mAttempts.laterOrReport("serviceDied", connect);
  }

 private:
  const Attempts mAttempts;
  const std::shared_ptr<ServiceHealth> mHealth;
  std::ostream& mStandardOutput;
};

void QuilProviderConnection::Attempts::later(void (*attempt)(QuilProviderConnection& connection)) const {
  PRB_LOGW(kTag, "%s: Rescheduling connection to QuilProvider", "rescheduleQuilProviderConnection");
  tasks->runAfter(kReconnectDelay, [weak = connection, attempt] {
    if (const auto living = weak.lock()) {
      attempt(*living);
    }
  });
}

void QuilProviderConnection::Attempts::laterOrReport(
    const char* who, void (*attempt)(QuilProviderConnection& connection)) const {
  try {
    later(attempt);
  } catch (const std::exception& fault) {
    PRB_LOGE(kTag, "%s: %s", who, fault.what());
  }
}

QuilProviderConnection::QuilProviderConnection(const Platform& platform)
    : mProviders(platform.providers),
      mTasks(platform.tasks),
      mHealth(platform.health),
      mStandardOutput(platform.standardOutput != nullptr ? *platform.standardOutput : std::cout) {}

void QuilProviderConnection::listenToAppearances() {
  mProviders->setAppearanceHandler([again = attempts()] {
    if (!again.connection.expired()) {
      again.laterOrReport("serviceAppeared", connectAndShowLastScene);
    }
  });
}

bool QuilProviderConnection::connectToQuilProvider() {
  PRB_LOGI(kTag, "%s: Connecting to QuilProvider", "connectToQuilProvider");
  const std::shared_ptr<IQuilCameraProvider> found = mProviders->getService("default");
  if (!replaceProvider(found)) {
    return false;
  }
  if (found == nullptr) {
    PRB_LOGE(kTag, "%s Could not get interface to camera service", "connectToQuilProvider");
    return false;
  }
  std::shared_ptr<DeathRecipient> recipient;
  {
    const MutexLock lock(mMutex);
    if (mDeathRecipient == nullptr) {
      mDeathRecipient = std::make_shared<PRBDeathRecipient>(attempts(), mHealth, mStandardOutput);
    }
    recipient = mDeathRecipient;
  }
  if (!found->linkToDeath(recipient, 0)) {
    PRB_LOGE(kTag, "%s Could not link to camera service death", "connectToQuilProvider");
    return false;
  }
  return true;
}

bool QuilProviderConnection::replaceProvider(const std::shared_ptr<IQuilCameraProvider>& provider) {
  std::shared_ptr<IQuilCameraProvider> old;
  bool closed = false;
  {
    const MutexLock lock(mMutex);
    closed = mClosed;
    old = std::exchange(mProvider, mClosed ? nullptr : provider);
    mHealth->setProvider(mProvider != nullptr);
  }
  unlink(old);
  return !closed;
}

void QuilProviderConnection::dropProvider(const std::shared_ptr<IQuilCameraProvider>& failed) {
  {
    const MutexLock lock(mMutex);
    if (mProvider != failed) {
      return;
    }
    mProvider = nullptr;
    mHealth->setProvider(false);
  }
  unlink(failed);
}

// Without the lock: it waits for a notification under way.
void QuilProviderConnection::unlink(const std::shared_ptr<IQuilCameraProvider>& old) {
  std::shared_ptr<DeathRecipient> recipient;
  {
    const MutexLock lock(mMutex);
    recipient = mDeathRecipient;
  }
  if (old != nullptr && recipient != nullptr) {
    old->unlinkToDeath(recipient);
  }
}

std::shared_ptr<IQuilCameraProvider> QuilProviderConnection::provider() const {
  const MutexLock lock(mMutex);
  return mProvider;
}

void QuilProviderConnection::rescheduleQuilProviderConnection() {
  attempts().later(connect);
}

void QuilProviderConnection::connect(QuilProviderConnection& connection) {
  connection.connectToQuilProvider();
}

void QuilProviderConnection::connectAndShowLastScene(QuilProviderConnection& connection) {
  if (!connection.connectToQuilProvider()) {
    return;
  }
  const MutexLock lock(connection.mSceneMutex);
  if (connection.mScene.empty()) {
    return;
  }
  try {
    connection.handOver();
  } catch (const std::exception& fault) {
    // Nobody is above on this thread.
    PRB_LOGE(kTag, "%s: %s", "serviceAppeared", fault.what());
  }
}

void QuilProviderConnection::sendScene(const std::string& document) {
  const MutexLock lock(mSceneMutex);
  mScene = document;
  handOver();
}

void QuilProviderConnection::handOver() {
  const std::shared_ptr<IQuilCameraProvider> current = provider();
  if (current == nullptr) {
    PRB_LOGE(kTag, "ProductionRules.myJsonNotifierCallback QuilCameraProvider service is null");
    return;
  }
  PRB_LOGI(kTag, "%s notifierCallback, sending Json to quilprovider, message %s\n", "operator()",
           mScene.c_str());
  if (current->setSceneJson(mScene)) {
    return;
  }
  PRB_LOGI(kTag, "%s setSceneJson failed and returned error", "operator()");
  dropProvider(current);
  rescheduleQuilProviderConnection();
}

void QuilProviderConnection::close() {
  {
    const MutexLock lock(mMutex);
    mClosed = true;
  }
  replaceProvider(nullptr);
}

}  // namespace fyn::productionrules
