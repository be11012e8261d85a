#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>

#include "platform/Mutex.h"

namespace fyn::productionrules {

struct MqttMessage {
  std::string topic;
  std::string text;

  std::size_t bytes() const { return topic.size() + text.size(); }
};

/**
 * Messages on their way from the publishing threads to the network thread. While there is no connection, or
 * when too many or too large ones wait, a message is dropped and counted.
 */
class MqttOutbox {
 public:
  /** False when the message is dropped. */
  bool put(MqttMessage message);

  /** The message that waits longest. */
  std::optional<MqttMessage> take();

  bool isEmpty() const;

  /** Counts a message that was taken and could not be sent. */
  void countUnsent();

  /** The connection stands. Returns the number of messages that could not be sent since the last time. */
  std::uint64_t open();

  /** Messages that could not be sent, from the beginning. */
  std::uint64_t lost() const;

  /** The connection has ended: what waits is dropped and counted. */
  void shut();

 private:
  mutable Mutex mMutex;
  std::deque<MqttMessage> mMessages PR_GUARDED_BY(mMutex);
  std::size_t mBytes PR_GUARDED_BY(mMutex) = 0;
  /** Since the connection stood last, and before. */
  std::uint64_t mUnsent PR_GUARDED_BY(mMutex) = 0;
  std::uint64_t mUnsentBefore PR_GUARDED_BY(mMutex) = 0;
  bool mOpen PR_GUARDED_BY(mMutex) = false;
};

}  // namespace fyn::productionrules
