// The camera provider comes, dies, fails and comes back; on threads of its own, and after the service has
// gone.
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <system_error>
#include <thread>

#include "platform/embedded/ThreadDelayedTasks.h"
#include "tests/service/RoomService.h"

namespace fyn::productionrules::testing {
namespace {

/** A provider that has died between the look-up and the registration. */
struct DyingProvider final : IQuilCameraProvider {
  bool setSceneJson(const std::string& /*json*/) override { return false; }
  bool linkToDeath(const std::shared_ptr<DeathRecipient>& /*recipient*/, std::uint64_t cookie) override {
    lastCookie = cookie;
    return false;
  }
  void unlinkToDeath(const std::shared_ptr<DeathRecipient>& /*recipient*/) override {}
  std::uint64_t lastCookie = 99;
};

struct DyingProviders final : ICameraProviders {
  std::shared_ptr<IQuilCameraProvider> getService(const std::string& instance) override {
    asked = instance;
    return provider;
  }
  std::string asked;
  std::shared_ptr<DyingProvider> provider = std::make_shared<DyingProvider>();
};

TEST(ProviderConnection, RefusedRegistrationIsReported) {
  RoomService room;
  const auto providers = std::make_shared<DyingProviders>();
  room.platform.providers = providers;
  room.start();
  EXPECT_FALSE(room.service->connectToQuilProvider());
  EXPECT_EQ(
      room.take(),
      (Lines{"I|ProductionRulesIPCService|connectToQuilProvider: Connecting to QuilProvider",
             "E|ProductionRulesIPCService|connectToQuilProvider Could not link to camera service death"}));
  EXPECT_EQ(providers->asked, "default");
  EXPECT_EQ(providers->provider->lastCookie, 0U);
}

/** Cannot start any thread. */
struct NoThreads final : DelayedTasks {
  void runAfter(std::chrono::milliseconds /*delay*/, std::function<void()> /*task*/) override {
    throw std::system_error(std::make_error_code(std::errc::resource_unavailable_try_again),
                            "thread constructor failed");
  }
};

TEST(ProviderConnection, ThreadThatCannotStartIsReportedAndSurvived) {
  RoomService room;
  room.platform.tasks = std::make_shared<NoThreads>();
  room.providers->up();
  room.start();
  room.providers->failNextCall();
  room.send(scene());
  const Lines lines = room.take();
  EXPECT_EQ(
      lines.back().rfind("E|BaseIPCService|process: topic: /ICDOut, exception: thread constructor failed", 0),
      0U)
      << lines.back();
  EXPECT_TRUE(room.service->connectToQuilProvider());
  room.take();
  room.providers->down();
  EXPECT_EQ(room.take().back().rfind("E|ProductionRulesIPCService|serviceDied: thread constructor failed", 0),
            0U);
  room.providers->announce();
  EXPECT_EQ(
      room.take().back().rfind("E|ProductionRulesIPCService|serviceAppeared: thread constructor failed", 0),
      0U);
  room.send("/ctl", "reset-layouts");
  room.send(scene());
  EXPECT_EQ(room.heardTopics().back(), "/PRBOut");
}

/** Runs every task on a thread, after its delay or at once, and counts those that are not over. */
class CountedThreads final : public DelayedTasks {
 public:
  explicit CountedThreads(bool atOnce) : mAtOnce(atOnce) {}

  void runAfter(std::chrono::milliseconds delay, std::function<void()> task) override {
    ++*mRunning;
    mThreads.runAfter(mAtOnce ? std::chrono::milliseconds(0) : delay,
                      [task = std::move(task), running = mRunning]() mutable {
                        task();
                        task = nullptr;
                        --*running;
                      });
  }

  bool waitForAll() const {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (*mRunning > 0 && std::chrono::steady_clock::now() < deadline) {
      std::this_thread::yield();
    }
    return *mRunning == 0;
  }

 private:
  const bool mAtOnce;
  ThreadDelayedTasks mThreads;
  std::shared_ptr<std::atomic<int>> mRunning = std::make_shared<std::atomic<int>>(0);
};

TEST(ProviderConnectionThreads, ReconnectionOutlivesTheService) {
  RoomService room;
  const auto threads = std::make_shared<CountedThreads>(false);
  room.platform.tasks = threads;
  room.providers->up();
  room.start();
  room.providers->down();
  room.providers->up();
  room.take();
  room.service.reset();
  EXPECT_TRUE(threads->waitForAll());
  EXPECT_EQ(room.take(), Lines{}) << "an attempt for a service that is gone";
  room.providers->down();
  EXPECT_EQ(room.take(), Lines{}) << "a death told to a service that is gone";
}

TEST(ProviderConnectionThreads, ReconnectsWhileScenesAreSentAndShowsNoneLate) {
  RoomService room(0);
  room.configure(
      "persist.fdtimers.layoutchange.rmtoother=0\npersist.fdtimers.layoutchange.gftoother=0\n"
      "persist.tvpr.logs=0\n");
  std::atomic<int> sent{0};
  std::atomic<int> lastScene{0};
  std::atomic<bool> inOrder{true};
  const auto providers = std::make_shared<InProcessCameraProviders>([&](const std::string& text) {
    constexpr std::string_view kKey = "\"sceneNumber\":";
    const int scene = std::stoi(text.substr(text.find(kKey) + kKey.size()));
    inOrder = inOrder && lastScene.exchange(scene) <= scene;
    ++sent;
  });
  const auto threads = std::make_shared<CountedThreads>(true);
  room.platform.providers = providers;
  room.platform.tasks = threads;
  std::ostringstream printed;
  room.platform.standardOutput = &printed;
  providers->up();
  room.start();
  std::atomic<bool> over{false};
  std::thread killer(inThisServiceState([&] {
    while (!over) {
      providers->up();
      providers->announce();
      providers->failNextCall();
      std::this_thread::yield();
      providers->down();
    }
  }));
  for (int i = 0; i < 300; ++i) {
    room.send(i % 2 == 0 ? scene().person(1).at(640, 300) : scene());
  }
  over = true;
  killer.join();
  ASSERT_TRUE(threads->waitForAll());
  providers->up();
  ASSERT_TRUE(room.service->connectToQuilProvider());
  room.send("/ctl", "reset-layouts");
  const int before = sent;
  // The first call may still meet a failure that was ordered above.
  for (int i = 0; i < 4; ++i) {
    room.send(i % 2 == 0 ? scene().person(1).at(640, 300) : scene());
    ASSERT_TRUE(threads->waitForAll());
  }
  EXPECT_GE(sent - before, 3);
  EXPECT_TRUE(inOrder) << "a newer scene was followed by an older one";
}

}  // namespace
}  // namespace fyn::productionrules::testing
