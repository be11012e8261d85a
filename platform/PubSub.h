#pragma once

#include <string>
#include <string_view>

/** The publish/subscribe bus as the service sees it. Topics are exact, case-sensitive texts that begin with
 * "/". */
namespace com::quil::pubsub {

/** Receives what a client's subscriptions deliver. Called on a thread of the bus client. */
class IPubSubListener {
 public:
  virtual ~IPubSubListener() = default;
  virtual void onMessage(const std::string& topic, const std::string& message) = 0;
};

/**
 * One connection to the bus. All operations return at once and may be called from any thread; a client that
 * has lost its broker keeps accepting them. The rules that every backend keeps:
 * - a subscription covers its topic and every topic beneath it;
 * - a message reaches one listener at most once, however many of its subscriptions match;
 * - subscribing again to the same topic changes nothing;
 * - a client never receives what it publishes itself;
 * - messages of one publisher arrive in the order of publishing.
 */
class IPubSubClient {
 public:
  virtual ~IPubSubClient() = default;

  virtual void publish(const std::string& topic, const std::string& message) = 0;

  /** Declares a topic that this client will publish; publishing without it still works. */
  virtual void advertise(const std::string& topic) = 0;

  /** `listener` must outlive the client or the call of `close`. */
  virtual void subscribe(const std::string& topic, IPubSubListener& listener) = 0;

  /** Ends all deliveries: when it returns no listener is called any more. Publishing after it does nothing.
   */
  virtual void close() = 0;
};

/** The topic, '/' and the sub-topic. */
std::string appendSubtopic(std::string_view topic, std::string_view sub);

/** Whether a subscription to `subscribed` delivers messages of `topic`. */
bool topicCovers(std::string_view subscribed, std::string_view topic);

}  // namespace com::quil::pubsub
