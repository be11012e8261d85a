#include "platform/linux/mqtt/MqttOutbox.h"

#include <algorithm>
#include <utility>

namespace fyn::productionrules {

namespace {
constexpr std::size_t kMostMessages = 1024;
constexpr std::size_t kMostBytes = 16 << 20;
}  // namespace

bool MqttOutbox::put(MqttMessage message) {
  const MutexLock lock(mMutex);
  if (message.delivery.retain) {
    Retained& retained = mRetained[message.topic];
    retained.last = message;
    if (!mOpen) {
      mUnsent += std::exchange(retained.isWaiting, true) ? 1 : 0;
      return false;
    }
  }
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
  for (auto& [topic, retained] : mRetained) {
    retained.isWaiting = false;
    mMessages.push_back(retained.last);
    mBytes += mMessages.back().bytes();
  }
  mUnsentBefore += mUnsent;
  return std::exchange(mUnsent, 0);
}

std::uint64_t MqttOutbox::lost() const {
  const MutexLock lock(mMutex);
  const auto waiting = std::count_if(mRetained.begin(), mRetained.end(),
                                     [](const auto& retained) { return retained.second.isWaiting; });
  return mUnsentBefore + mUnsent + static_cast<std::uint64_t>(waiting);
}

void MqttOutbox::shut() {
  const MutexLock lock(mMutex);
  mOpen = false;
  for (const MqttMessage& message : mMessages) {
    const auto retained = mRetained.find(message.topic);
    if (retained != mRetained.end() && retained->second.last.text == message.text) {
      retained->second.isWaiting = true;
    } else {
      ++mUnsent;
    }
  }
  mMessages.clear();
  mBytes = 0;
}

}  // namespace fyn::productionrules
