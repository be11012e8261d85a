#pragma once

#include <cstddef>
#include <deque>
#include <optional>
#include <string>

namespace fyn::productionrules {

struct QueuedMessage {
  std::string topic;
  std::string text;

  std::size_t bytes() const { return topic.size() + text.size(); }
};

/**
 * Bus messages that wait for the dispatch thread, in order, in bounded memory. A vision result tells the
 * whole situation, so when too much of them waits only the newest does, until the queue has been empty; every
 * other message is kept for as long as memory allows at all. The owner locks.
 */
class MessageQueue {
 public:
  /** A message may be no larger, in bytes with its topic: ten times the result of a full room in all its
   * cameras. */
  static constexpr std::size_t kLargestMessage = 4 << 20;
  /** Vision results that wait before the older ones are given up: eight seconds of a stream, or two of the
   * largest. */
  static constexpr std::size_t kMostVisionResults = 256;
  static constexpr std::size_t kMostVisionBytes = 8 << 20;
  /** Of all messages; more means that nobody handles them any more. */
  static constexpr std::size_t kMostMessages = 4096;
  static constexpr std::size_t kMostBytes = 32 << 20;

  enum class Loss { none, tooLarge, overtaken, noRoom };

  struct Outcome {
    /** Why messages were dropped. */
    Loss loss = Loss::none;
    std::size_t dropped = 0;
  };

  /** Takes a message in, or drops it or what it overtakes. */
  Outcome put(const std::string& topic, const std::string& text);

  /** The message that waits longest. */
  std::optional<QueuedMessage> take();

  bool isEmpty() const { return mMessages.empty(); }
  std::size_t size() const { return mMessages.size(); }

 private:
  bool hasRoomFor(std::size_t bytes) const;
  std::size_t dropVisionResults();

  std::deque<QueuedMessage> mMessages;
  std::size_t mBytes = 0;
  std::size_t mVisionResults = 0;
  std::size_t mVisionBytes = 0;
  bool mNewestOnly = false;
};

}  // namespace fyn::productionrules
