#include "platform/BaseIPCService.h"

#include <chrono>
#include <exception>
#include <utility>

#include "platform/VisionSettings.h"

namespace fyn::productionrules {

namespace {

constexpr const char* kTag = "BaseIPCService";

// A minute of a full vision stream. More waiting messages than this mean that nobody handles them any more.
constexpr std::size_t kQueueLimit = 4096;

}  // namespace

BaseIPCService::BaseIPCService(Platform platform, std::uint32_t periodMs, const std::string& name)
    : mPlatform(std::move(platform)), mPeriodMs(periodMs), mName(name) {}

BaseIPCService::~BaseIPCService() {
  closeBus();
}

void BaseIPCService::closeBus() {
  if (mPlatform.bus) {
    mPlatform.bus->close();
  }
}

void BaseIPCService::onMessage(const std::string& topic, const std::string& message) {
  bool overflowBegins = false;
  {
    const MutexLock lock(mMutex);
    if (mQueue.size() < kQueueLimit) {
      mQueue.push_back({topic, message});
    } else {
      overflowBegins = mDropped++ == 0;
    }
  }
  mWakeUp.notifyOne();
  if (overflowBegins) {
    PRB_LOGE(kTag, "%s: %zu messages wait, new ones are dropped, the first on %s", "onMessage", kQueueLimit,
             topic.c_str());
  }
}

void BaseIPCService::process(const std::string& /*topic*/, const std::string& /*message*/) {}

void BaseIPCService::process(std::int32_t /*what*/, const ExtraMessage& /*extra*/) {}

void BaseIPCService::periodicCheck() {}

void BaseIPCService::run() {
  init();
  if (mInitialised) {
    mInitialised();
  }
  const auto period = std::chrono::milliseconds(mPeriodMs);
  auto nextCheck = std::chrono::steady_clock::now() + period;
  MutexLock lock(mMutex);
  while (!mStopping) {
    if (mQueue.empty()) {
      mWakeUp.waitUntil(lock, nextCheck,
                        [this]() PR_REQUIRES(mMutex) { return mStopping || !mQueue.empty(); });
    }
    if (!mQueue.empty() && !mStopping) {
      const Message message = std::move(mQueue.front());
      mQueue.pop_front();
      lock.unlock();
      handle(message);
      lock.lock();
    }
    if (!mStopping && std::chrono::steady_clock::now() >= nextCheck) {
      lock.unlock();
      periodicCheck();
      lock.lock();
      nextCheck = std::chrono::steady_clock::now() + period;
    }
  }
}

void BaseIPCService::stop() {
  // Under the lock: without it `run` could return and the service go before the notification.
  const MutexLock lock(mMutex);
  mStopping = true;
  mWakeUp.notifyOne();
}

std::size_t BaseIPCService::handlePending() {
  std::size_t handled = 0;
  MutexLock lock(mMutex);
  while (!mQueue.empty()) {
    const Message message = std::move(mQueue.front());
    mQueue.pop_front();
    lock.unlock();
    handle(message);
    ++handled;
    lock.lock();
  }
  return handled;
}

std::uint64_t BaseIPCService::droppedMessages() const {
  const MutexLock lock(mMutex);
  return mDropped;
}

void BaseIPCService::handle(const Message& message) {
  try {
    process(message.topic, message.text);
  } catch (const std::exception& fault) {
    PRB_LOGE(kTag, "%s: topic: %s, exception: %s", "process", message.topic.c_str(), fault.what());
  }
}

}  // namespace fyn::productionrules
