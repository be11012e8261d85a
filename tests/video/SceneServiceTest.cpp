#include <gtest/gtest.h>

#include "platform/linux/dbus/DBusCameraProviders.h"
#include "tests/linux/Servers.h"
#include "tests/testing/CapturedLog.h"
#include "tools/base/UsageError.h"
#include "tools/video/camera/Inbox.h"
#include "tools/video/camera/SceneService.h"

namespace fyn::productionrules::video::testing {
namespace {

using namespace fyn::productionrules::testing;

DBusOptions optionsFor(const MessageBus& bus) {
  DBusOptions options;
  options.bus = bus.address();
  return options;
}

TEST(SceneService, TakesScenesAndComesBackWithTheBus) {
  CapturedLog log;
  MessageBus bus;
  Inbox inbox;
  const SceneService service(bus.address(), [&](const std::string& document) {
    inbox.put({Arrival::Kind::sceneFromService, document});
  });
  const auto arrives = [&](const std::string& document) {
    const std::optional<Arrival> arrival = inbox.take(std::chrono::seconds(20));
    return arrival && arrival->text == document;
  };
  DBusCameraProviders providers(optionsFor(bus));
  std::shared_ptr<IQuilCameraProvider> provider = providers.getService("default");
  ASSERT_NE(provider, nullptr);
  EXPECT_TRUE(provider->setSceneJson("{\"first\":1}"));
  EXPECT_TRUE(arrives("{\"first\":1}"));
  bus.kill();
  bus.start();
  ASSERT_TRUE(eventually([&] { return (provider = providers.getService("default")) != nullptr; }));
  EXPECT_TRUE(provider->setSceneJson("{\"second\":2}"));
  EXPECT_TRUE(arrives("{\"second\":2}"));
  EXPECT_FALSE(inbox.take(std::chrono::milliseconds(0)));
}

TEST(SceneService, SaysWhenThereIsNoBusOrAnotherProvider) {
  const ScratchFolder folder;
  const auto ignore = [](const std::string&) {};
  EXPECT_THROW(SceneService("unix:path=" + folder.file("absent"), ignore), UsageError);
  const MessageBus bus;
  const SceneService service(bus.address(), ignore);
  EXPECT_THROW(SceneService(bus.address(), ignore), UsageError);
}

}  // namespace
}  // namespace fyn::productionrules::video::testing
