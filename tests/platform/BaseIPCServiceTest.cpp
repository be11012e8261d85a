#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <stdexcept>
#include <thread>

#include "platform/BaseIPCService.h"
#include "platform/embedded/InProcessBus.h"
#include "tests/testing/CapturedLog.h"

namespace fyn::productionrules {
namespace {

using Lines = std::vector<std::string>;

/** Notes what it handles; a message "throw X" throws X, "stop" ends the loop. */
class NotingService final : public BaseIPCService {
 public:
  explicit NotingService(Platform platform = {}, std::uint32_t periodMs = 4000)
      : BaseIPCService(std::move(platform), periodMs, "noting") {}
  ~NotingService() override { closeBus(); }

  void init() override { handled.emplace_back("init"); }
  void process(const std::string& topic, const std::string& message) override {
    if (message.rfind("throw ", 0) == 0) {
      throw std::runtime_error(message.substr(6));
    }
    handled.push_back(topic + " " + message);
    if (message == "stop") {
      stop();
    }
  }
  void periodicCheck() override {
    if (onPeriodicCheck) {
      onPeriodicCheck();
    }
  }

  void listenTo(const std::string& topic) { pubSubClient().subscribe(topic, *this); }

  Lines handled;
  std::function<void()> onPeriodicCheck;
};

TEST(BaseIPCService, HandlesInOrderOfArrival) {
  NotingService service;
  service.onMessage("/a", "1");
  service.onMessage("/b", "2");
  service.onMessage("/a", "3");
  EXPECT_TRUE(service.handled.empty()) << "a message is handled where it arrives";
  EXPECT_EQ(service.handlePending(), 3U);
  EXPECT_EQ(service.handled, (Lines{"/a 1", "/b 2", "/a 3"}));
  EXPECT_EQ(service.handlePending(), 0U);
}

TEST(BaseIPCService, RunInitialisesFirstAndEndsAtStop) {
  NotingService service;
  service.onMessage("/a", "1");
  service.onMessage("/a", "stop");
  service.onMessage("/a", "after the stop");
  service.run();
  EXPECT_EQ(service.handled, (Lines{"init", "/a 1", "/a stop"}));
}

TEST(BaseIPCService, StopBeforeRunEndsItAtOnce) {
  NotingService service;
  service.stop();
  service.run();
  EXPECT_EQ(service.handled, (Lines{"init"}));
}

TEST(BaseIPCService, AThrowingHandlerIsLoggedWithItsTopicAndTheNextMessageIsHandled) {
  testing::CapturedLog log;
  NotingService service;
  service.onMessage("/cameras", "throw no list");
  service.onMessage("/ctl", "stop");
  service.run();
  EXPECT_EQ(service.handled, (Lines{"init", "/ctl stop"}));
  EXPECT_EQ(log.lines(), (Lines{"E|BaseIPCService|process: topic: /cameras, exception: no list"}));
}

TEST(BaseIPCService, AFullQueueDropsTheNewestCountsThemAndSaysSoOnce) {
  testing::CapturedLog log;
  NotingService service;
  constexpr int kLimit = 4096;
  for (int number = 0; number < kLimit + 3; ++number) {
    service.onMessage("/ICDOut", std::to_string(number));
  }
  EXPECT_EQ(service.droppedMessages(), 3U);
  EXPECT_EQ(log.lines().size(), 1U);

  EXPECT_EQ(service.handlePending(), static_cast<std::size_t>(kLimit));
  EXPECT_EQ(service.handled.back(), "/ICDOut 4095");
  service.onMessage("/ICDOut", "room again");
  EXPECT_EQ(service.handlePending(), 1U);
  EXPECT_EQ(service.droppedMessages(), 3U);
}

TEST(BaseIPCService, ChecksPeriodicallyWhileNoMessageArrives) {
  NotingService service({}, 1);
  int checks = 0;
  service.onPeriodicCheck = [&] {
    if (++checks == 3) {
      service.stop();
    }
  };
  service.run();
  EXPECT_EQ(checks, 3);
}

TEST(BaseIPCService, ChecksPeriodicallyWhileMessagesNeverEnd) {
  NotingService service({}, 1);
  service.onPeriodicCheck = [&] { service.stop(); };
  std::atomic<bool> ended{false};
  const testing::CapturedLog log(0);
  std::thread producer(inThisServiceState([&] {
    while (!ended) {
      service.onMessage("/ICDOut", "frame");
    }
  }));
  service.run();
  ended = true;
  producer.join();
  SUCCEED() << "run returned";
}

TEST(BaseIPCService, TakesMessagesFromManyThreadsEachInItsOrder) {
  constexpr int kProducers = 4;
  constexpr int kMessages = 500;
  InProcessBus bus;
  Platform platform;
  platform.bus = bus.connect();
  NotingService service(platform);
  service.listenTo("/from");

  std::thread dispatch([&] { service.run(); });
  std::vector<std::thread> producers;
  for (int producer = 0; producer < kProducers; ++producer) {
    producers.emplace_back([&bus, producer] {
      const auto client = bus.connect();
      for (int number = 0; number < kMessages; ++number) {
        client->publish("/from/" + std::to_string(producer), std::to_string(number));
      }
    });
  }
  for (std::thread& producer : producers) {
    producer.join();
  }
  service.onMessage("/end", "stop");
  dispatch.join();

  std::vector<int> seen(kProducers, 0);
  ASSERT_EQ(service.handled.size(), 2U + kProducers * kMessages);
  for (std::size_t i = 1; i + 1 < service.handled.size(); ++i) {
    const int producer = service.handled[i].at(6) - '0';
    int& number = seen.at(static_cast<std::size_t>(producer));
    EXPECT_EQ(service.handled[i], "/from/" + std::to_string(producer) + " " + std::to_string(number));
    ++number;
  }
}

TEST(BaseIPCService, NoMessageReachesItOnceItIsGone) {
  InProcessBus bus;
  const auto publisher = bus.connect();
  std::atomic<bool> ended{false};
  std::thread producer([&] {
    while (!ended) {
      publisher->publish("/ICDOut", "frame");
    }
  });
  for (int round = 0; round < 50; ++round) {
    Platform platform;
    platform.bus = bus.connect();
    NotingService service(platform);
    service.listenTo("/ICDOut");
    service.handlePending();
  }
  ended = true;
  producer.join();
  SUCCEED() << "for the sanitizers: nothing was called after its end";
}

}  // namespace
}  // namespace fyn::productionrules
