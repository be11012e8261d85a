#include <gtest/gtest.h>

#include <functional>
#include <memory>

#include "platform/embedded/InProcessBus.h"
#include "tests/linux/Processes.h"
#include "tests/testing/NotingListener.h"
#if PR_HAVE_MQTT
#include "platform/linux/mqtt/MqttPubSubClient.h"
#include "tests/linux/Servers.h"
#include "tests/linux/Subscription.h"
#endif

namespace fyn::productionrules::testing {
namespace {

using com::quil::pubsub::IPubSubClient;
using Lines = std::vector<std::string>;
using Client = std::shared_ptr<IPubSubClient>;

const std::string kEndOfRow = "/end/of/row";

/** A bus under test: how to make a client, and how to wait until its subscriptions are in force. */
struct Transport {
  const char* name;
  std::function<Client()> connect;
  std::function<void(IPubSubClient&)> settle;
};

struct Row {
  const char* rule;
  Lines subscriptions;
  /** Made after the first ones are in force. */
  Lines laterSubscriptions;
  Lines published;
  /** What the subscriber itself publishes, after the publisher. */
  Lines ownMessages;
  Lines received;
};

const Row kRows[] = {
    {"the topic itself", {"/ctl"}, {}, {"/ctl"}, {}, {"/ctl 0"}},
    {"topics beneath", {"/debug/log"}, {}, {"/debug/log/fyncamid", "/debug"}, {}, {"/debug/log/fyncamid 0"}},
    {"two levels beneath", {"/a"}, {}, {"/a/b/c"}, {}, {"/a/b/c 0"}},
    {"no topic that only begins alike", {"/camera"}, {}, {"/cameras", "/camera"}, {}, {"/camera 1"}},
    {"case matters", {"/ctl"}, {}, {"/CTL", "/ctl"}, {}, {"/ctl 1"}},
    {"once through overlapping subscriptions",
     {"/ctl/recordStart", "/ctl", "/ctl/recordStop"},
     {},
     {"/ctl/recordStart", "/ctl", "/ctl/recordStop"},
     {},
     {"/ctl/recordStart 0", "/ctl 1", "/ctl/recordStop 2"}},
    {"once to who subscribes again", {"/ctl", "/ctl"}, {"/ctl"}, {"/ctl"}, {}, {"/ctl 0"}},
    {"once when a covered topic is added",
     {"/ctl"},
     {"/ctl/tracking-mode"},
     {"/ctl/tracking-mode"},
     {},
     {"/ctl/tracking-mode 0"}},
    {"once when a covering topic is added",
     {"/ctl/recordStart"},
     {"/ctl"},
     {"/ctl/recordStart", "/ctl"},
     {},
     {"/ctl/recordStart 0", "/ctl 1"}},
    {"in the order of publishing",
     {"/PRBOut", "/ICDOut", "/ctl"},
     {},
     {"/ICDOut", "/ctl", "/ICDOut", "/PRBOut", "/ctl", "/ICDOut"},
     {},
     {"/ICDOut 0", "/ctl 1", "/ICDOut 2", "/PRBOut 3", "/ctl 4", "/ICDOut 5"}},
    {"not one's own, also through overlapping subscriptions",
     {"/ctl", "/ctl/tracking-mode"},
     {},
     {"/ctl/tracking-mode"},
     {"/ctl/tracking-mode", "/ctl"},
     {"/ctl/tracking-mode 0"}},
};

void runRow(const Transport& transport, const Row& row) {
  SCOPED_TRACE(std::string(transport.name) + ": " + row.rule);
  NotingListener listener;
  NotingListener ofPublisher;
  const Client subscriber = transport.connect();
  const Client publisher = transport.connect();
  const auto subscribeAll = [&](const Lines& topics) {
    for (const std::string& topic : topics) {
      subscriber->subscribe(topic, listener);
    }
  };
  subscribeAll(row.subscriptions);
  subscriber->subscribe(kEndOfRow, listener);
  publisher->subscribe(kEndOfRow, ofPublisher);
  transport.settle(*subscriber);
  transport.settle(*publisher);
  subscribeAll(row.laterSubscriptions);
  transport.settle(*subscriber);
  int number = 0;
  for (const std::string& topic : row.published) {
    publisher->publish(topic, std::to_string(number++));
  }
  for (const std::string& topic : row.ownMessages) {
    subscriber->publish(topic, "own");
  }
  // Everything before an end message has arrived when that has: one from each client.
  subscriber->publish(kEndOfRow, "of the subscriber");
  EXPECT_TRUE(eventually([&] { return ofPublisher.has(kEndOfRow + " of the subscriber"); }));
  publisher->publish(kEndOfRow, "of the publisher");
  EXPECT_TRUE(eventually([&] { return listener.has(kEndOfRow + " of the publisher"); }));
  Lines expected = row.received;
  expected.push_back(kEndOfRow + " of the publisher");
  EXPECT_EQ(listener.received(), expected);
  subscriber->close();
  publisher->close();
}

TEST(BusRules, InsideAProcess) {
  for (const Row& row : kRows) {
    InProcessBus bus;
    runRow({"in-process", [&] { return bus.connect(); }, [](IPubSubClient&) {}}, row);
  }
}

#if PR_HAVE_MQTT
TEST(BusRules, OnABroker) {
  Broker broker;
  MqttOptions options;
  int room = 0;
  const auto connect = [&] { return std::make_shared<MqttPubSubClient>(options); };
  const auto settle = [](IPubSubClient& client) {
    ASSERT_TRUE(isSubscribed(dynamic_cast<MqttPubSubClient&>(client)));
  };
  for (const Row& row : kRows) {
    // A room for each row, so that none meets what the one before it left with the broker.
    options.address = parseBusAddress(broker.url("room-" + std::to_string(room++)));
    runRow({"MQTT", connect, settle}, row);
  }
}

TEST(BusRules, TheBrokerShowsTheLastPictureToALateViewerButNoCommandAndNotToItsPublisher) {
  Broker broker;
  MqttOptions options;
  options.address = parseBusAddress(broker.url());
  NotingListener ofViewer;
  NotingListener ofService;
  NotingListener ofWitness;
  MqttPubSubClient service(options);
  MqttPubSubClient witness(options);
  service.subscribe("/answer", ofService);
  witness.subscribe("/PRBOut", ofWitness);
  ASSERT_TRUE(isSubscribed(service));
  ASSERT_TRUE(isSubscribed(witness));
  service.publish("/PRBOut", "picture");
  service.publish("/ctl", "command");
  service.publish("/PRBOut/2", "beneath the picture");
  EXPECT_TRUE(eventually([&] { return ofWitness.has("/PRBOut/2 beneath the picture"); }));

  MqttPubSubClient viewer(options);
  viewer.subscribe("/ctl", ofViewer);
  viewer.subscribe("/PRBOut", ofViewer);
  ASSERT_TRUE(isSubscribed(viewer));
  EXPECT_TRUE(eventually([&] { return ofViewer.has("/PRBOut picture"); }));

  service.subscribe("/PRBOut", ofService);
  ASSERT_TRUE(isSubscribed(service));
  service.publish("/ctl", "end");
  EXPECT_TRUE(eventually([&] { return ofViewer.has("/ctl end"); }));
  viewer.publish("/answer", "end");
  EXPECT_TRUE(eventually([&] { return ofService.has("/answer end"); }));
  EXPECT_EQ(ofViewer.received(), (Lines{"/PRBOut picture", "/ctl end"}));
  EXPECT_EQ(ofService.received(), Lines{"/answer end"});
}
#endif

}  // namespace
}  // namespace fyn::productionrules::testing
