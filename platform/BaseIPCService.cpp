#include "platform/BaseIPCService.h"

#include <chrono>
#include <cinttypes>
#include <exception>
#include <utility>

#include "platform/Topics.h"
#include "platform/VisionSettings.h"

namespace fyn::productionrules {

namespace {

constexpr const char* kTag = "BaseIPCService";

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
  MessageQueue::Outcome outcome;
  bool begins = false;
  {
    const MutexLock lock(mMutex);
    outcome = mQueue.put(topic, message);
    mPlatform.health->setWaitingMessages(mQueue.size());
    mLosses.dropped += outcome.dropped;
    begins = !std::exchange(mLosses.said.at(static_cast<std::size_t>(outcome.loss)), true);
  }
  mWakeUp.notifyOne();
  if (outcome.dropped > 0) {
    mPlatform.health->countDropped(outcome.dropped);
  }
  if (begins) {
    noteLoss(outcome.loss, topic, topic.size() + message.size());
  }
}

void BaseIPCService::noteLoss(MessageQueue::Loss loss, const std::string& topic, std::size_t bytes) {
  switch (loss) {
    case MessageQueue::Loss::none:
      break;
    case MessageQueue::Loss::tooLarge:
      PRB_LOGE(kTag, "%s: a message of %zu bytes on %s is dropped, the largest may have %zu", "onMessage",
               bytes, topic.c_str(), MessageQueue::kLargestMessage);
      break;
    case MessageQueue::Loss::overtaken:
      PRB_LOGE(kTag, "%s: messages come faster than they are handled, only the newest on %s waits",
               "onMessage", std::string(topics::kVisionResult).c_str());
      break;
    case MessageQueue::Loss::noRoom:
      PRB_LOGE(kTag, "%s: too many messages wait, new ones are dropped, the first on %s", "onMessage",
               topic.c_str());
      break;
  }
}

void BaseIPCService::noteEndOfLoss() {
  std::uint64_t dropped = 0;
  {
    const MutexLock lock(mMutex);
    if (mLosses.droppedAtLastCheck == mLosses.dropped) {
      dropped = mLosses.dropped;
      mLosses = {};
    } else {
      mLosses.droppedAtLastCheck = mLosses.dropped;
    }
  }
  if (dropped > 0) {
    PRB_LOGW(kTag, "%s: all messages are handled again, %" PRIu64 " were dropped", "noteEndOfLoss", dropped);
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
    const std::optional<QueuedMessage> message = takeNext();
    if (!message) {
      mWakeUp.waitUntil(lock, nextCheck,
                        [this]() PR_REQUIRES(mMutex) { return mStopping || !mQueue.isEmpty(); });
    } else {
      lock.unlock();
      const auto taken = std::chrono::steady_clock::now();
      handle(*message);
      if (message->topic == topics::kVisionResult) {
        mPlatform.health->countCycle(std::chrono::steady_clock::now() - taken);
      }
      lock.lock();
    }
    if (!mStopping && std::chrono::steady_clock::now() >= nextCheck) {
      lock.unlock();
      noteEndOfLoss();
      periodicCheck();
      if (mPeriodPassed) {
        mPeriodPassed();
      }
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
  while (const std::optional<QueuedMessage> message = takeNext()) {
    lock.unlock();
    handle(*message);
    ++handled;
    lock.lock();
  }
  return handled;
}

std::uint64_t BaseIPCService::droppedMessages() const {
  return mPlatform.health->read().droppedMessages;
}

std::optional<QueuedMessage> BaseIPCService::takeNext() {
  std::optional<QueuedMessage> message = mQueue.take();
  mPlatform.health->setWaitingMessages(mQueue.size());
  return message;
}

void BaseIPCService::handle(const QueuedMessage& message) {
  try {
    process(message.topic, message.text);
  } catch (const std::exception& fault) {
    PRB_LOGE(kTag, "%s: topic: %s, exception: %s", "process", message.topic.c_str(), fault.what());
  }
}

}  // namespace fyn::productionrules
