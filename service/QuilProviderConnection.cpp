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
  explicit PRBDeathRecipient(std::weak_ptr<QuilProviderConnection> connection)
      : mConnection(std::move(connection)) {}

  void serviceDied(std::uint64_t /*cookie*/, const std::weak_ptr<IQuilCameraProvider>& /*who*/) override {
    if (const auto connection = mConnection.lock()) {
      connection->serviceDied();
    }
  }

 private:
  const std::weak_ptr<QuilProviderConnection> mConnection;
};

QuilProviderConnection::QuilProviderConnection(const Platform& platform)
    : mProviders(platform.providers),
      mTasks(platform.tasks),
      mStandardOutput(platform.standardOutput != nullptr ? *platform.standardOutput : std::cout) {}

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
      mDeathRecipient = std::make_shared<PRBDeathRecipient>(weak_from_this());
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
  PRB_LOGW(kTag, "%s: Rescheduling connection to QuilProvider", "rescheduleQuilProviderConnection");
  mTasks->runAfter(kReconnectDelay, [weak = weak_from_this()] {
    if (const auto connection = weak.lock()) {
      connection->connectToQuilProvider();
    }
  });
}

void QuilProviderConnection::serviceDied() {
  PRB_LOGI(kTag, "%s: QuilProvider service died", "serviceDied");
  mStandardOutput << "serviceDied: QuilProvider service died\n" << std::flush;
  try {
    rescheduleQuilProviderConnection();
  } catch (const std::exception& fault) {
    // This is the backend's thread: nobody above would report it.
    PRB_LOGE(kTag, "%s: %s", "serviceDied", fault.what());
  }
}

void QuilProviderConnection::sendScene(const std::string& document) {
  const std::shared_ptr<IQuilCameraProvider> current = provider();
  if (current == nullptr) {
    PRB_LOGE(kTag, "ProductionRules.myJsonNotifierCallback QuilCameraProvider service is null");
    return;
  }
  PRB_LOGI(kTag, "%s notifierCallback, sending Json to quilprovider, message %s\n", "operator()",
           document.c_str());
  if (current->setSceneJson(document)) {
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
