#include "platform/linux/mqtt/MqttOutbox.h"

#include <utility>

namespace fyn::productionrules {

namespace {
constexpr std::size_t kMostMessages = 1024;
constexpr std::size_t kMostBytes = 16 << 20;
}  // namespace

bool MqttOutbox::put(MqttMessage message) {
  const MutexLock lock(mMutex);
  if (!mOpen || mMessages.size() >= kMostMessages || mBytes + message.bytes() > kMostBytes) {
    ++mUnsent;
    return false;
  }
  mBytes += message.bytes();
  mMessages.push_back(std::move(message));
  return true;
}

std::optional<MqttMessage> MqttOutbox::take() {
  const MutexLock lock(mMutex);
  if (mMessages.empty()) {
    return std::nullopt;
  }
  std::optional<MqttMessage> first(std::move(mMessages.front()));
  mMessages.pop_front();
  mBytes -= first->bytes();
  return first;
}

bool MqttOutbox::isEmpty() const {
  const MutexLock lock(mMutex);
  return mMessages.empty();
}

void MqttOutbox::countUnsent() {
  const MutexLock lock(mMutex);
  ++mUnsent;
}

std::uint64_t MqttOutbox::open() {
  const MutexLock lock(mMutex);
  mOpen = true;
  mUnsentBefore += mUnsent;
  return std::exchange(mUnsent, 0);
}

std::uint64_t MqttOutbox::lost() const {
  const MutexLock lock(mMutex);
  return mUnsentBefore + mUnsent;
}

void MqttOutbox::shut() {
  const MutexLock lock(mMutex);
  mOpen = false;
  mUnsent += mMessages.size();
  mMessages.clear();
  mBytes = 0;
}

}  // namespace fyn::productionrules
