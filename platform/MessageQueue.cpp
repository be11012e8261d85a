#include "platform/MessageQueue.h"

#include <algorithm>
#include <utility>

#include "platform/Topics.h"

namespace fyn::productionrules {

namespace {

bool isVisionResult(const QueuedMessage& message) {
  return message.topic == topics::kVisionResult;
}

}  // namespace

MessageQueue::Outcome MessageQueue::put(const std::string& topic, const std::string& text) {
  const std::size_t bytes = topic.size() + text.size();
  if (bytes > kLargestMessage) {
    return {Loss::tooLarge, 1};
  }
  Outcome outcome;
  const bool vision = topic == topics::kVisionResult;
  const bool tooManyResults = mVisionResults >= kMostVisionResults || mVisionBytes + bytes > kMostVisionBytes;
  if ((vision && (mNewestOnly || tooManyResults)) || !hasRoomFor(bytes)) {
    mNewestOnly = true;
    outcome.dropped = dropVisionResults();
    outcome.loss = outcome.dropped > 0 ? Loss::overtaken : Loss::none;
  }
  if (!hasRoomFor(bytes)) {
    return {Loss::noRoom, outcome.dropped + 1};
  }
  mMessages.push_back({topic, text});
  mBytes += bytes;
  if (vision) {
    ++mVisionResults;
    mVisionBytes += bytes;
  }
  return outcome;
}

std::optional<QueuedMessage> MessageQueue::take() {
  if (mMessages.empty()) {
    mNewestOnly = false;
    return std::nullopt;
  }
  std::optional<QueuedMessage> first(std::move(mMessages.front()));
  mMessages.pop_front();
  mBytes -= first->bytes();
  if (isVisionResult(*first)) {
    --mVisionResults;
    mVisionBytes -= first->bytes();
  }
  return first;
}

bool MessageQueue::hasRoomFor(std::size_t bytes) const {
  return mMessages.size() < kMostMessages && mBytes + bytes <= kMostBytes;
}

std::size_t MessageQueue::dropVisionResults() {
  if (mVisionResults > 0) {
    mMessages.erase(std::remove_if(mMessages.begin(), mMessages.end(), isVisionResult), mMessages.end());
  }
  mBytes -= std::exchange(mVisionBytes, 0);
  return std::exchange(mVisionResults, 0);
}

}  // namespace fyn::productionrules
