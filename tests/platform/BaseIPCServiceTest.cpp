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

struct Flood {
  const char* name;
  std::size_t count;
  std::size_t bytes;
  const char* topic;
  /** How many of the flood are handled, the last ones of it. */
  std::size_t handled;
  const char* said;
};

TEST(BaseIPCService, AFloodCostsVisionResultsBeforeAnythingElse) {
  using Queue = MessageQueue;
  constexpr const char* kOvertaken =
      "E|BaseIPCService|onMessage: messages come faster than they are handled, only the newest on /ICDOut "
      "waits";
  constexpr std::size_t kLarge = 2 << 20;
  const Flood rows[] = {
      {"as many results as may wait", Queue::kMostVisionResults, 10, "/ICDOut", Queue::kMostVisionResults,
       nullptr},
      {"one more", Queue::kMostVisionResults + 1, 10, "/ICDOut", 1, kOvertaken},
      {"many more", 10000, 10, "/ICDOut", 1, kOvertaken},
      {"a few large ones", 300, kLarge, "/ICDOut", 1, kOvertaken},
      {"commands", 4000, 10, "/ctl", 4000, nullptr},
      {"too many commands", 4100, 10, "/ctl", 4094,
       "E|BaseIPCService|onMessage: too many messages wait, new ones are dropped, the first on /ctl"},
      {"a command that is too large", 1, Queue::kLargestMessage, "/ctl", 0,
       "E|BaseIPCService|onMessage: a message of 4194308 bytes on /ctl is dropped, the largest may have "
       "4194304"},
  };
  for (const Flood& row : rows) {
    SCOPED_TRACE(row.name);
    testing::CapturedLog log;
    NotingService service;
    service.onMessage("/camera", "before");
    service.onMessage("/cameras", "before");
    const std::string filler(row.bytes, 'x');
    for (std::size_t number = 0; number < row.count; ++number) {
      service.onMessage(row.topic, filler);
    }
    EXPECT_EQ(service.handlePending(), row.handled + 2);
    EXPECT_EQ(service.handled.at(1), "/cameras before");
    EXPECT_EQ(service.droppedMessages(), row.count - row.handled);
    EXPECT_EQ(log.lines(), row.said != nullptr ? Lines{row.said} : Lines{});
    service.onMessage(row.topic, "room again");
    service.onMessage(row.topic, "for more than one");
    EXPECT_EQ(service.handlePending(), 2U);
  }
}

TEST(BaseIPCService, TheNewestVisionResultStaysBehindTheCommandsBeforeIt) {
  NotingService service;
  for (std::size_t number = 0; number < MessageQueue::kMostVisionResults; ++number) {
    service.onMessage("/ICDOut", std::to_string(number));
  }
  for (const char* const text : {"a", "b"}) {
    service.onMessage("/ctl", text);
    service.onMessage("/ICDOut", text);
  }
  service.handlePending();
  EXPECT_EQ(service.handled, (Lines{"/ctl a", "/ctl b", "/ICDOut b"}));
}

TEST(BaseIPCService, SaysTheEndOfALossWithItsCount) {
  testing::CapturedLog log;
  NotingService service({}, 1);
  for (int count = 0; count < 3; ++count) {
    service.onMessage("/ctl", std::string(MessageQueue::kLargestMessage, 'x'));
  }
  service.onPeriodicCheck = [&] {
    if (log.lines().size() == 2) {
      service.stop();
    }
  };
  service.run();
  EXPECT_EQ(log.lines().back(),
            "W|BaseIPCService|noteEndOfLoss: all messages are handled again, 3 were dropped");
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
