#if PR_HAVE_MQTT
#include <gtest/gtest.h>
#include <signal.h>

#include <algorithm>
#include <memory>
#include <new>

#include "platform/linux/mqtt/MqttPubSubClient.h"
#include "platform/linux/mqtt/MqttTopics.h"
#include "tests/linux/Servers.h"
#include "tests/linux/Subscription.h"
#include "tests/testing/CapturedLog.h"
#include "tests/testing/NotingListener.h"

namespace fyn::productionrules::testing {
namespace {

using Lines = std::vector<std::string>;

MqttOptions optionsFor(const std::string& url) {
  MqttOptions options;
  options.address = parseBusAddress(url);
  options.firstRetry = std::chrono::milliseconds(10);
  options.lastRetry = std::chrono::milliseconds(50);
  return options;
}

std::size_t countContaining(const Lines& lines, const std::string& text) {
  return static_cast<std::size_t>(std::count_if(lines.begin(), lines.end(), [&](const std::string& line) {
    return line.find(text) != std::string::npos;
  }));
}

TEST(MqttClient, ComesBackAfterEachLossAndSaysSoOnce) {
  CapturedLog log;
  Broker broker;
  NotingListener listener;
  MqttPubSubClient subscriber(optionsFor(broker.url()));
  subscriber.subscribe("/ctl", listener);
  subscriber.subscribe("/PRBOut", listener);
  ASSERT_TRUE(isSubscribed(subscriber));
  auto publisher = std::make_unique<MqttPubSubClient>(optionsFor(broker.url()));
  ASSERT_TRUE(isSubscribed(*publisher));

  for (int round = 1; round <= 2; ++round) {
    log.take();
    broker.kill();
    ASSERT_TRUE(eventually([&] { return countContaining(log.lines(), "lost the connection") == 2; }));
    for (int i = 0; i < 5; ++i) {
      publisher->publish(i % 2 == 0 ? "/ctl" : "/ICDOut", "lost");
    }
    publisher->publish("/PRBOut", "overtaken");
    publisher->publish("/PRBOut", "picture " + std::to_string(round));
    broker.start();
    ASSERT_TRUE(isSubscribed(subscriber));
    ASSERT_TRUE(isSubscribed(*publisher));
    const std::string text = "round " + std::to_string(round);
    publisher->publish("/ctl", text);
    EXPECT_TRUE(eventually([&] { return listener.has("/ctl " + text); }));
    const Lines lines = log.take();
    EXPECT_EQ(lines.size(), 4U);
    EXPECT_EQ(countContaining(lines, "lost the connection"), 2U);
    EXPECT_EQ(countContaining(lines, "connected again"), 2U);
    EXPECT_EQ(countContaining(lines, "6 messages could not be sent"), 1U);
  }
  EXPECT_EQ(listener.received(),
            (Lines{"/PRBOut picture 1", "/ctl round 1", "/PRBOut picture 2", "/ctl round 2"}));
}

TEST(MqttClient, WaitsForABrokerThatStartsLaterWithoutBlockingAnyCall) {
  CapturedLog log;
  Broker broker;
  broker.kill();
  NotingListener listener;
  const auto start = std::chrono::steady_clock::now();
  MqttPubSubClient client(optionsFor(broker.url()));
  client.subscribe("/ctl", listener);
  client.publish("/ctl", "too early");
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2));
  ASSERT_TRUE(eventually([&] { return countContaining(log.lines(), "cannot connect") == 1; }));
  broker.start();
  EXPECT_TRUE(isSubscribed(client));
  EXPECT_EQ(countContaining(log.lines(), "1 messages could not be sent"), 1U);
}

TEST(MqttClient, ABrokerThatHangsBlocksNeitherPublishingNorClosing) {
  CapturedLog log;
  Broker broker;
  MqttPubSubClient client(optionsFor(broker.url()));
  ASSERT_TRUE(isSubscribed(client));
  broker.signal(SIGSTOP);
  const auto start = std::chrono::steady_clock::now();
  const std::string large(100000, 'x');
  for (int i = 0; i < 2000; ++i) {
    client.publish(i % 2 == 0 ? "/PRBOut" : "/TimerDebug", large);
  }
  client.close();
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
}

// Of the camera documents a later one completes an earlier one.
TEST(MqttClient, RetainedMessagesComeInTheOrderOfTheSubscriptions) {
  Broker broker;
  MqttPubSubClient publisher(optionsFor(broker.url()));
  publisher.publish("/PRBOut", "first by name");
  publisher.publish("/PeopleCount", "1");
  ASSERT_TRUE(isSubscribed(publisher));
  publisher.close();
  for (const Lines& topics : {Lines{"/PRBOut", "/PeopleCount"}, Lines{"/PeopleCount", "/PRBOut"}}) {
    NotingListener listener;
    MqttPubSubClient subscriber(optionsFor(broker.url()));
    for (const std::string& topic : topics) {
      subscriber.subscribe(topic, listener);
    }
    EXPECT_TRUE(eventually([&] { return listener.received().size() == 2; }));
    EXPECT_EQ(listener.received().front().rfind(topics.front(), 0), 0U) << listener.received().front();
  }
}

TEST(MqttClient, CloseSendsWhatIsQueued) {
  Broker broker;
  NotingListener listener;
  MqttPubSubClient subscriber(optionsFor(broker.url()));
  subscriber.subscribe("/end", listener);
  subscriber.subscribe("/ctl", listener);
  ASSERT_TRUE(isSubscribed(subscriber));
  MqttPubSubClient publisher(optionsFor(broker.url()));
  ASSERT_TRUE(isSubscribed(publisher));
  constexpr std::size_t kCount = 200;
  Lines expected;
  for (std::size_t i = 0; i < kCount; ++i) {
    publisher.publish("/ctl", std::to_string(i));
    expected.push_back("/ctl " + std::to_string(i));
  }
  publisher.close();
  publisher.publish("/ctl", "after the close");
  EXPECT_TRUE(eventually([&] { return listener.received().size() >= kCount; }));
  EXPECT_EQ(listener.received(), expected);
}

TEST(MqttClient, EncryptsWithCertificatesOfBothSides) {
  const ThrowawayAuthority authority;
  const ThrowawayAuthority stranger;
  Broker broker("allow_anonymous true\nrequire_certificate true\ncafile " + authority.caFile() +
                "\ncertfile " + authority.certificate("broker") + "\nkeyfile " + authority.key("broker"));
  MqttOptions options = optionsFor("mqtts://127.0.0.1:" + std::to_string(broker.port()));
  options.caFile = authority.caFile();
  options.certificateFile = authority.certificate("client");
  options.keyFile = authority.key("client");
  NotingListener listener;
  MqttPubSubClient one(options);
  MqttPubSubClient other(options);
  one.subscribe("/ctl", listener);
  ASSERT_TRUE(isSubscribed(one));
  ASSERT_TRUE(isSubscribed(other));
  const std::string large(1000000, 'x');
  other.publish("/ctl", large);
  EXPECT_TRUE(eventually([&] { return listener.has("/ctl " + large); }));

  const Broker plain;
  const ScratchFolder folder;
  MqttOptions distrusting = options;
  distrusting.caFile = stranger.caFile();
  MqttOptions nameless = options;
  nameless.certificateFile.clear();
  nameless.keyFile.clear();
  MqttOptions elsewhere = options;
  elsewhere.address.host = "localhost";
  MqttOptions unencrypted = options;
  unencrypted.address.port = static_cast<std::uint16_t>(plain.port());
  MqttOptions careless = options;
  careless.caFile = folder.write("ca.pem", "no certificate");
  const std::pair<MqttOptions, const char*> rows[] = {
      {distrusting, "the broker's certificate is not trusted"},
      // The broker may have gone before its reason has come.
      {nameless, "cannot connect"},
      {elsewhere, "the broker's certificate is not for the host name of the address"},
      {unencrypted, "perhaps it speaks no TLS on this port"},
      {careless, "the file of --mqtt-ca holds no certificates in PEM form"},
  };
  for (const auto& [wrong, reason] : rows) {
    CapturedLog log;
    MqttPubSubClient client(wrong);
    EXPECT_TRUE(eventually([&] { return countContaining(log.lines(), "cannot connect") == 1; }));
    EXPECT_EQ(countContaining(log.lines(), reason), 1U) << reason << ": " << log.lines().back();
    EXPECT_FALSE(isSubscribed(client, std::chrono::milliseconds(100)));
  }
}

TEST(MqttClient, HidesWhatIsMuchTooLargeAndSurvivesAListenerThatThrows) {
  struct Choosy final : com::quil::pubsub::IPubSubListener {
    void onMessage(const std::string& topic, const std::string& message) override {
      if (message == "throw") {
        throw std::bad_alloc();
      }
      const MutexLock lock(mutex);
      heard.push_back(topic + " " + std::to_string(message.size()));
    }
    Mutex mutex;
    Lines heard PR_GUARDED_BY(mutex);
  };
  CapturedLog log;
  Broker broker;
  Choosy listener;
  MqttPubSubClient subscriber(optionsFor(broker.url()));
  MqttPubSubClient publisher(optionsFor(broker.url()));
  subscriber.subscribe("/ctl", listener);
  ASSERT_TRUE(isSubscribed(subscriber));
  ASSERT_TRUE(isSubscribed(publisher));
  publisher.publish("/ctl", std::string(9 << 20, 'x'));
  publisher.publish("/ctl", std::string(5 << 20, 'x'));
  publisher.publish("/ctl", "throw");
  publisher.publish("/ctl", "end");
  const auto heard = [&] {
    const MutexLock lock(listener.mutex);
    return listener.heard;
  };
  EXPECT_TRUE(eventually([&] { return heard().size() >= 2; }));
  EXPECT_EQ(heard(), (Lines{"/ctl 5242880", "/ctl 3"}));
  EXPECT_EQ(countContaining(log.lines(), "onMessage: std::bad_alloc"), 1U);
  EXPECT_EQ(countContaining(log.lines(), "lost the connection"), 0U);
}

TEST(MqttClient, GivesUserAndPasswordAndSaysOnceWhenTheyAreRefused) {
  ScratchFolder folder;
  runTool({"mosquitto_passwd", "-b", "-c", folder.file("passwords"), "camera", "secret"});
  Broker broker("password_file " + folder.file("passwords"));
  MqttOptions options = optionsFor(broker.url());
  options.user = "camera";
  options.password = "secret";
  MqttPubSubClient known(options);
  EXPECT_TRUE(isSubscribed(known));

  CapturedLog log;
  options.password = "wrong-password";
  MqttPubSubClient unknown(options);
  EXPECT_TRUE(eventually([&] { return countContaining(log.lines(), "ot authori") == 1; }));
  EXPECT_FALSE(isSubscribed(unknown, std::chrono::milliseconds(300)));
  EXPECT_EQ(log.lines().size(), 1U) << log.lines().back();
  EXPECT_EQ(countContaining(log.lines(), "wrong-password"), 0U);
}

struct DeliveryRow {
  const char* topic;
  int qos;
  bool retain;
};

TEST(MqttTopics, StreamsAreFastPicturesAreKeptCommandsArrive) {
  const DeliveryRow rows[] = {{"/ICDOut", 0, false},
                              {"/PRBDecisions", 0, false},
                              {"/PRBOut", 1, true},
                              {"/PRBOutSecondary/1", 1, false},
                              {"/ctl/tracking-mode", 1, false}};
  for (const DeliveryRow& row : rows) {
    EXPECT_EQ(mqttDeliveryOf(row.topic).qos, row.qos) << row.topic;
    EXPECT_EQ(mqttDeliveryOf(row.topic).retain, row.retain) << row.topic;
  }
}

TEST(MqttTopics, ANameBelongsToItsRoomOnly) {
  EXPECT_EQ(topicOfMqttName("room-1", "room-1/ctl"), "/ctl");
  EXPECT_EQ(topicOfMqttName("", "/ctl"), "/ctl");
  EXPECT_EQ(topicOfMqttName("room-1", "room-12/ctl"), std::nullopt);
  EXPECT_EQ(topicOfMqttName("room-1", "room-1"), std::nullopt);
}

}  // namespace
}  // namespace fyn::productionrules::testing
#endif
