#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <map>
#include <optional>
#include <string>

#include "platform/Mutex.h"
#include "platform/linux/mqtt/MqttTopics.h"

namespace fyn::productionrules {

struct MqttMessage {
  std::string topic;
  std::string text;
  MqttDelivery delivery;

  std::size_t bytes() const { return topic.size() + text.size(); }
};

/**
 * Messages on their way from the publishing threads to whoever uses the connection. While there is no
 * connection, or when too many or too large ones wait, a message is dropped and counted. The last one of each
 * retained topic is what holds now: it waits for the next connection, and goes out on each, because a broker
 * that was restarted may have forgotten it.
 */
class MqttOutbox {
 public:
  /** False when the message does not go out on this connection. */
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

  /** The connection has ended: what waits is dropped and counted, but for the last of each retained topic. */
  void shut();

 private:
  struct Retained {
    MqttMessage last;
    /** No connection has taken it yet. */
    bool isWaiting = false;
  };

  mutable Mutex mMutex;
  std::deque<MqttMessage> mMessages PR_GUARDED_BY(mMutex);
  std::size_t mBytes PR_GUARDED_BY(mMutex) = 0;
  /** By topic. */
  std::map<std::string, Retained> mRetained PR_GUARDED_BY(mMutex);
  /** Since the connection stood last, and before. */
  std::uint64_t mUnsent PR_GUARDED_BY(mMutex) = 0;
  std::uint64_t mUnsentBefore PR_GUARDED_BY(mMutex) = 0;
  bool mOpen PR_GUARDED_BY(mMutex) = false;
};

}  // namespace fyn::productionrules
