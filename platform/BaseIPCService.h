#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "platform/MessageQueue.h"
#include "platform/Mutex.h"
#include "platform/Platform.h"

namespace fyn::productionrules {

/** A message that is not from the bus: an integer and a text. */
struct ExtraMessage {
  std::string text;
};

/**
 * The base of a service on the bus. It owns the bus client, takes the messages that the bus delivers into a
 * queue and handles them one at a time, in order, on the thread that calls `run`, the dispatch thread.
 *
 * The queue is bounded (MessageQueue). A loss is logged once when it begins, and when none has happened for a
 * period the number of messages lost.
 *
 * A handler that throws never stops the dispatch thread: the exception's text is logged at error level with
 * the topic, and the next message is handled.
 */
class BaseIPCService : public com::quil::pubsub::IPubSubListener {
 public:
  /** `periodMs`: how often `periodicCheck` is called, in milliseconds. */
  BaseIPCService(Platform platform, std::uint32_t periodMs, const std::string& name);
  ~BaseIPCService() override;
  BaseIPCService(const BaseIPCService&) = delete;
  BaseIPCService& operator=(const BaseIPCService&) = delete;

  /** Puts a bus message into the queue. Called on any thread. */
  void onMessage(const std::string& topic, const std::string& message) override;

  /** Called once before messages flow. */
  virtual void init() = 0;

  /** Handles one bus message on the dispatch thread. The base has nothing of its own to do with it. */
  virtual void process(const std::string& topic, const std::string& message);

  /** Handles one message that is not from the bus; the base ignores it. */
  virtual void process(std::int32_t what, const ExtraMessage& extra);

  /** Called every period on the dispatch thread. */
  virtual void periodicCheck();

  /** Calls `init`, then handles messages until `stop`. */
  void run();

  /** `handler` is called by `run`, on its thread, once `init` has run. Set before `run`. */
  void setInitialisedHandler(std::function<void()> handler) { mInitialised = std::move(handler); }

  /** `handler` is called by `run`, on its thread, every period: it is not stuck. Set before `run`. */
  void setPeriodHandler(std::function<void()> handler) { mPeriodPassed = std::move(handler); }

  /** Ends `run` after the message in hand. Called on any thread. */
  void stop();

  /** Handles what is in the queue now on the caller's thread and returns the number of messages: `run` for a
   * caller that has its own loop, such as a replay. */
  std::size_t handlePending();

  /** Messages that were dropped because they were too large or too many. */
  std::uint64_t droppedMessages() const;

  std::uint32_t periodMs() const { return mPeriodMs; }
  const std::string& name() const { return mName; }

 protected:
  void setName(const std::string& name) { mName = name; }
  com::quil::pubsub::IPubSubClient& pubSubClient() { return *mPlatform.bus; }
  Platform& platform() { return mPlatform; }

  /** Ends deliveries of the bus. The most derived destructor calls it first, so that no message arrives at a
   * half-destroyed service. */
  void closeBus();

 private:
  std::optional<QueuedMessage> takeNext() PR_REQUIRES(mMutex);
  void handle(const QueuedMessage& message);
  void noteLoss(MessageQueue::Loss loss, const std::string& topic, std::size_t bytes);
  void noteEndOfLoss();

  Platform mPlatform;
  const std::uint32_t mPeriodMs;
  std::string mName;
  std::function<void()> mInitialised;
  std::function<void()> mPeriodPassed;

  mutable Mutex mMutex;
  ConditionVariable mWakeUp;
  MessageQueue mQueue PR_GUARDED_BY(mMutex);
  /** The losses that are not over. */
  struct {
    std::uint64_t dropped = 0;
    std::uint64_t droppedAtLastCheck = 0;
    std::array<bool, 4> said{};
  } mLosses PR_GUARDED_BY(mMutex);
  bool mStopping PR_GUARDED_BY(mMutex) = false;
};

}  // namespace fyn::productionrules
