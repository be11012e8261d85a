#include "platform/embedded/InProcessCameraProviders.h"

#include <atomic>
#include <utility>

#include "platform/DeathRecipients.h"

namespace fyn::productionrules {

struct InProcessCameraProviders::Calls {
  std::function<void(const std::string& json)> onScene;
  std::atomic<bool> failNext{false};
};

class InProcessCameraProviders::Provider final : public IQuilCameraProvider,
                                                 public std::enable_shared_from_this<Provider> {
 public:
  explicit Provider(std::shared_ptr<Calls> calls) : mCalls(std::move(calls)) {}

  bool setSceneJson(const std::string& json) override {
    if (mCalls->onScene) {
      mCalls->onScene(json);
    }
    const bool failing = mCalls->failNext.exchange(false);
    return !failing && !mRecipients.isDead();
  }

  bool linkToDeath(const std::shared_ptr<DeathRecipient>& recipient, std::uint64_t cookie) override {
    return mRecipients.link(recipient, cookie);
  }

  void unlinkToDeath(const std::shared_ptr<DeathRecipient>& recipient) override {
    mRecipients.unlink(recipient);
  }

  void die() { mRecipients.announceDeath(weak_from_this()); }

 private:
  const std::shared_ptr<Calls> mCalls;
  DeathRecipients mRecipients;
};

InProcessCameraProviders::InProcessCameraProviders(std::function<void(const std::string& json)> onScene)
    : mCalls(std::make_shared<Calls>()) {
  mCalls->onScene = std::move(onScene);
}

InProcessCameraProviders::~InProcessCameraProviders() = default;

std::shared_ptr<IQuilCameraProvider> InProcessCameraProviders::getService(const std::string& /*instance*/) {
  const MutexLock lock(mMutex);
  return mProvider;
}

void InProcessCameraProviders::setAppearanceHandler(std::function<void()> appeared) {
  const MutexLock lock(mMutex);
  mAppeared = std::move(appeared);
}

void InProcessCameraProviders::announce() {
  std::function<void()> appeared;
  {
    const MutexLock lock(mMutex);
    appeared = mAppeared;
  }
  if (appeared) {
    appeared();
  }
}

void InProcessCameraProviders::up() {
  down();
  const MutexLock lock(mMutex);
  mProvider = std::make_shared<Provider>(mCalls);
}

void InProcessCameraProviders::down() {
  std::shared_ptr<Provider> dying;
  {
    const MutexLock lock(mMutex);
    dying = std::exchange(mProvider, nullptr);
  }
  // Outside the lock: whoever is told may look for a new provider.
  if (dying) {
    dying->die();
  }
}

void InProcessCameraProviders::failNextCall() {
  mCalls->failNext.store(true);
}

}  // namespace fyn::productionrules
