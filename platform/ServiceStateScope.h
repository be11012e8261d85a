#pragma once

#include <memory>
#include <utility>

#include "platform/ServiceState.h"

namespace fyn::productionrules {

/** Makes a state the current one of this thread until the end of the scope, null that of the process. Scopes
 * on one thread end in reverse order. */
class ServiceStateScope {
 public:
  explicit ServiceStateScope(std::shared_ptr<ServiceState> state)
      : mState(std::move(state)), mFormer(std::exchange(ServiceState::tOwn, mState.get())) {}
  ~ServiceStateScope() { ServiceState::tOwn = mFormer; }
  ServiceStateScope(const ServiceStateScope&) = delete;
  ServiceStateScope& operator=(const ServiceStateScope&) = delete;

  /** The one that this thread has of its own; null when that of the process is its current one. */
  static std::shared_ptr<ServiceState> own() {
    return ServiceState::tOwn != nullptr ? ServiceState::tOwn->shared_from_this() : nullptr;
  }

 private:
  const std::shared_ptr<ServiceState> mState;
  ServiceState* const mFormer;
};

/** `work`, for another thread to do in the state of the calling one. */
template <typename Work>
auto inThisServiceState(Work work) {
  return [state = ServiceStateScope::own(), task = std::move(work)]() mutable {
    const ServiceStateScope scope(state);
    task();
  };
}

}  // namespace fyn::productionrules
