#if PR_HAVE_DBUS
#include <gtest/gtest.h>
#include <signal.h>

#include <atomic>
#include <memory>

#include "platform/linux/dbus/DBusCameraProviders.h"
#include "tests/linux/Servers.h"
#include "tests/testing/CapturedLog.h"
#include "tests/testing/Folders.h"

namespace fyn::productionrules::testing {
namespace {

using Lines = std::vector<std::string>;
using std::chrono::milliseconds;
using std::chrono::steady_clock;

class NotingRecipient final : public DeathRecipient {
 public:
  void serviceDied(std::uint64_t cookie, const std::weak_ptr<IQuilCameraProvider>& who) override {
    lastCookie = cookie;
    knewWho = !who.expired();
    ++deaths;
  }
  std::atomic<int> deaths{0};
  std::atomic<std::uint64_t> lastCookie{0};
  std::atomic<bool> knewWho{false};
};

DBusOptions optionsFor(const MessageBus& bus) {
  DBusOptions options;
  options.bus = bus.address();
  return options;
}

TEST(DBusCameraProvider, IsFoundCalledMournedAndFoundAgain) {
  MessageBus bus;
  DBusCameraProviders providers(optionsFor(bus));
  EXPECT_EQ(providers.getService("default"), nullptr);
  for (int life = 0; life < 2; ++life) {
    auto process = std::make_unique<PrintingProvider>(bus);
    const std::shared_ptr<IQuilCameraProvider> provider = providers.getService("default");
    ASSERT_NE(provider, nullptr);
    EXPECT_EQ(providers.getService("second"), nullptr);
    const auto recipient = std::make_shared<NotingRecipient>();
    const auto released = std::make_shared<NotingRecipient>();
    EXPECT_TRUE(provider->linkToDeath(recipient, 7));
    EXPECT_TRUE(provider->linkToDeath(released, 8));
    provider->unlinkToDeath(released);
    const std::string large = "{\"scene\":\"" + std::string(200000, 'x') + "\"}";
    EXPECT_TRUE(provider->setSceneJson("{\"frameNumber\":1}"));
    EXPECT_TRUE(provider->setSceneJson(large));
    EXPECT_TRUE(eventually([&] { return process->scenes() == Lines{"{\"frameNumber\":1}", large}; }));

    process.reset();
    EXPECT_TRUE(eventually([&] { return recipient->deaths == 1; }));
    EXPECT_EQ(recipient->lastCookie, 7U);
    EXPECT_TRUE(recipient->knewWho);
    EXPECT_EQ(released->deaths, 0);
    EXPECT_FALSE(provider->setSceneJson("{}"));
    EXPECT_FALSE(provider->linkToDeath(recipient, 9));
    EXPECT_EQ(providers.getService("default"), nullptr);
  }
}

TEST(DBusCameraProvider, OneThatHangsCostsOnlyTheTimeLimit) {
  MessageBus bus;
  PrintingProvider process(bus);
  DBusCameraProviders providers(optionsFor(bus));
  const std::shared_ptr<IQuilCameraProvider> provider = providers.getService("default");
  ASSERT_NE(provider, nullptr);
  process.signal(SIGSTOP);
  const auto start = steady_clock::now();
  EXPECT_FALSE(provider->setSceneJson("{\"frameNumber\":1}"));
  const auto took = steady_clock::now() - start;
  EXPECT_GE(took, milliseconds(200));
  EXPECT_LT(took, milliseconds(2000));
  EXPECT_NE(providers.getService("default"), nullptr);
  process.signal(SIGCONT);
  EXPECT_TRUE(eventually([&] { return provider->setSceneJson("{\"frameNumber\":2}"); }));
}

TEST(DBusCameraProvider, TheDeathOfTheBusIsTheProvidersDeathAndANewBusIsFound) {
  CapturedLog log;
  MessageBus bus;
  auto process = std::make_unique<PrintingProvider>(bus);
  DBusCameraProviders providers(optionsFor(bus));
  const std::shared_ptr<IQuilCameraProvider> provider = providers.getService("default");
  ASSERT_NE(provider, nullptr);
  const auto recipient = std::make_shared<NotingRecipient>();
  ASSERT_TRUE(provider->linkToDeath(recipient, 0));
  bus.kill();
  EXPECT_TRUE(eventually([&] { return recipient->deaths == 1; }));
  EXPECT_FALSE(provider->setSceneJson("{}"));
  EXPECT_EQ(providers.getService("default"), nullptr);
  EXPECT_EQ(providers.getService("default"), nullptr);
  EXPECT_EQ(log.lines().size(), 1U);
  bus.start();
  process = std::make_unique<PrintingProvider>(bus);
  EXPECT_NE(providers.getService("default"), nullptr);
}

TEST(DBusCameraProvider, AnAppearanceIsSaidAlsoAfterTheBusHasBeenAway) {
  CapturedLog log;
  std::atomic<int> appearances{0};
  MessageBus bus;
  DBusOptions options = optionsFor(bus);
  options.busRetry = milliseconds(10);
  DBusCameraProviders providers(options);
  providers.setAppearanceHandler([&] { ++appearances; });
  EXPECT_EQ(providers.getService("default"), nullptr);
  auto process = std::make_unique<PrintingProvider>(bus);
  EXPECT_TRUE(eventually([&] { return appearances == 1; }));
  process.reset();
  process = std::make_unique<PrintingProvider>(bus);
  EXPECT_TRUE(eventually([&] { return appearances == 2; }));
  bus.kill();
  process.reset();
  ASSERT_TRUE(eventually([&] { return log.lines().size() == 1; })) << "the bus cannot be reached";
  bus.start();
  process = std::make_unique<PrintingProvider>(bus);
  // Twice when the bus was found again between the name's first moment and the question for it.
  EXPECT_TRUE(eventually([&] { return appearances >= 3; }));
  EXPECT_NE(providers.getService("default"), nullptr);
}

TEST(DBusCameraProvider, IsStartedByABusThatKnowsHow) {
  MessageBus bus;
  bus.addService(DBusCameraProviderNames::kService,
                 programFolder() + "/printing-camera-provider --bus " + bus.address());
  bus.start();
  std::atomic<bool> appeared{false};
  DBusCameraProviders providers(optionsFor(bus));
  providers.setAppearanceHandler([&] { appeared = true; });
  EXPECT_EQ(providers.getService("default"), nullptr) << "nobody waits for it";
  EXPECT_TRUE(eventually([&] { return appeared.load(); }));
  EXPECT_NE(providers.getService("default"), nullptr);
}

TEST(DBusCameraProvider, AHandleOutlivesItsFinder) {
  MessageBus bus;
  PrintingProvider process(bus);
  auto providers = std::make_unique<DBusCameraProviders>(optionsFor(bus));
  const std::shared_ptr<IQuilCameraProvider> provider = providers->getService("default");
  ASSERT_NE(provider, nullptr);
  providers.reset();
  EXPECT_FALSE(provider->setSceneJson("{}"));
}

}  // namespace
}  // namespace fyn::productionrules::testing
#endif
