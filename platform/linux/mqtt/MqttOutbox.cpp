#include "platform/linux/mqtt/MqttOutbox.h"

#include <algorithm>
#include <utility>

#include "platform/linux/mqtt/MqttTopics.h"

namespace fyn::productionrules {

namespace {
constexpr std::size_t kMostMessages = 1024;
constexpr std::size_t kMostBytes = 16 << 20;
}  // namespace

bool MqttOutbox::put(MqttMessage message) {
  const MutexLock lock(mMutex);
  const bool isRetained = mqttDeliveryOf(message.topic).retain;
  if (isRetained) {
    mRetained[message.topic].text = message.text;
  }
  if (!mOpen && isRetained) {
    mUnsent += std::exchange(mRetained[message.topic].isWaiting, true) ? 1 : 0;
    return false;
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
  for (auto& [topic, last] : mRetained) {
    last.isWaiting = false;
    mMessages.push_back({topic, last.text});
    mBytes += mMessages.back().bytes();
  }
  mUnsentBefore += mUnsent;
  return std::exchange(mUnsent, 0);
}

std::uint64_t MqttOutbox::lost() const {
  const MutexLock lock(mMutex);
  const auto waiting = std::count_if(mRetained.begin(), mRetained.end(),
                                     [](const auto& last) { return last.second.isWaiting; });
  return mUnsentBefore + mUnsent + static_cast<std::uint64_t>(waiting);
}

void MqttOutbox::shut() {
  const MutexLock lock(mMutex);
  mOpen = false;
  for (const MqttMessage& message : mMessages) {
    const auto last = mRetained.find(message.topic);
    if (last != mRetained.end() && last->second.text == message.text) {
      last->second.isWaiting = true;
    } else {
      ++mUnsent;
    }
  }
  mMessages.clear();
  mBytes = 0;
}

}  // namespace fyn::productionrules
