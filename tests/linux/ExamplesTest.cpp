#if PR_HAVE_MQTT && PR_HAVE_DBUS
#include <gtest/gtest.h>

#include "tests/linux/Servers.h"
#include "tests/testing/Folders.h"

namespace fyn::productionrules::testing {
namespace {

const std::string kExamples = sourceFolder() + "/examples/";

// In any order: the service finds a provider that comes late, and the cameras are retained.
TEST(Examples, ThePublisherAndTheCameraProviderInPythonMeetTheService) {
  NotifySocket notices;
  Broker broker;
  MessageBus bus;
  Process publisher(
      {kExamples + "vision-publisher.py", "127.0.0.1", std::to_string(broker.port()), "room-12"});
  Process service(
      {programFolder() + "/productionrulesd", "--bus", broker.url("room-12"), "--provider",
       "dbus:" + bus.address(), "--properties", "memory", "--config", "/nonexistent", "--log", "stderr"},
      {{"NOTIFY_SOCKET", notices.path()}});
  Process provider({kExamples + "camera-provider.py"}, {{"DBUS_SESSION_BUS_ADDRESS", bus.address()}});
  // The size of the camera is that of a document from before the service came.
  const auto shown = [&] {
    const std::vector<std::string> scenes = provider.outputLines();
    return !scenes.empty() &&
           scenes.back().find(R"("srcRef":{"width":1920,"height":1080})") != std::string::npos;
  };
  EXPECT_TRUE(eventually(shown)) << publisher.errorText() << service.errorText() << provider.errorText();
  // Vision results and the provider may not be there yet when it first says how it is doing.
  std::string status;
  do {
    status = notices.next("STATUS=");
  } while (!status.empty() && (status.find(" 0 vision results a second") != std::string::npos ||
                               status.find(", with camera provider") == std::string::npos));
  EXPECT_FALSE(status.empty()) << service.errorText();
}

}  // namespace
}  // namespace fyn::productionrules::testing
#endif
