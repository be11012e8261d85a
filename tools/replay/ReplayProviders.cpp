#include "tools/replay/ReplayProviders.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace fyn::productionrules {

/** One life of the provider. */
class ReplayProviders::Provider final : public IQuilCameraProvider,
                                        public std::enable_shared_from_this<Provider> {
 public:
  explicit Provider(ReplayProviders& owner) : mOwner(owner) {}

  bool setSceneJson(const std::string& json) override {
    const bool delivered = !mOwner.takeFailure() && mAlive;
    mOwner.mObserver.onScene(json, delivered);
    return delivered;
  }

  bool linkToDeath(const std::shared_ptr<DeathRecipient>& recipient, std::uint64_t cookie) override {
    if (mAlive) {
      mLinks.push_back({recipient, cookie});
    }
    return mAlive;
  }

  void unlinkToDeath(const std::shared_ptr<DeathRecipient>& recipient) override {
    mLinks.erase(std::remove_if(mLinks.begin(), mLinks.end(),
                                [&](const Link& link) { return link.recipient == recipient; }),
                 mLinks.end());
  }

  void die() {
    mAlive = false;
    for (const Link& link : std::exchange(mLinks, {})) {
      link.recipient->serviceDied(link.cookie, weak_from_this());
    }
  }

 private:
  struct Link {
    std::shared_ptr<DeathRecipient> recipient;
    std::uint64_t cookie;
  };

  ReplayProviders& mOwner;
  bool mAlive = true;
  std::vector<Link> mLinks;
};

std::shared_ptr<IQuilCameraProvider> ReplayProviders::getService(const std::string& /*instance*/) {
  return mProvider;
}

bool ReplayProviders::takeFailure() {
  return std::exchange(mFailNextCall, false);
}

void ReplayProviders::ensureUp() {
  if (mProvider == nullptr) {
    mProvider = std::make_shared<Provider>(*this);
  }
}

void ReplayProviders::apply(ProviderChange change) {
  switch (change) {
    case ProviderChange::Up:
      ensureUp();
      break;
    case ProviderChange::Announced:
      ensureUp();
      // Before the service is built there is nobody to tell.
      if (mAppeared) {
        mAppeared();
      }
      break;
    case ProviderChange::Down:
      if (const std::shared_ptr<Provider> dying = std::exchange(mProvider, nullptr)) {
        dying->die();
      }
      break;
    case ProviderChange::Fail:
      mFailNextCall = true;
      break;
  }
}

}  // namespace fyn::productionrules
