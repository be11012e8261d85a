#if PR_HAVE_MQTT
#include <gtest/gtest.h>
#include <signal.h>

#include <algorithm>
#include <memory>

#include "platform/linux/mqtt/MqttPubSubClient.h"
#include "tests/linux/Servers.h"
#include "tests/testing/Folders.h"
#include "tests/testing/NotingListener.h"
#include "tests/testing/SceneBuilder.h"

namespace fyn::productionrules::testing {
namespace {

/** A client in the room of one device, which sees the device's pictures. */
class Watcher {
 public:
  Watcher(int port, const std::string& room) {
    MqttOptions options;
    options.address = parseBusAddress("mqtt://127.0.0.1:" + std::to_string(port) + "/" + room);
    options.firstRetry = std::chrono::milliseconds(10);
    mClient = std::make_unique<MqttPubSubClient>(options);
    mClient->subscribe("/PRBOut", mPictures);
  }

  void publish(const std::string& topic, const std::string& text) { mClient->publish(topic, text); }

  bool shows(const std::string& part) const {
    const std::vector<std::string> lines = mPictures.received();
    return std::any_of(lines.begin(), lines.end(),
                       [&](const std::string& line) { return line.find(part) != std::string::npos; });
  }

 private:
  NotingListener mPictures;
  std::unique_ptr<MqttPubSubClient> mClient;
};

TEST(MultiDevice, ThreeDevicesOnOneBrokerShowWhatThePrimaryDecides) {
  const int port = freePort();
  Process room(
      {sourceFolder() + "/tools/multi-device", "--port", std::to_string(port), "--programs", programFolder()},
      {{"FYN_CONF_NAME", "/dev/null"}, {"PRB_LOG", "stderr"}});
  ASSERT_TRUE(eventually([&] { return !room.outputLines().empty() && isListening(port); }))
      << room.errorText();
  Watcher primary(port, "main");
  Watcher first(port, "side1");
  Watcher second(port, "side2");

  // Nothing tells when a device has subscribed, so everything is said until the picture is there.
  const std::string people =
      scene().person(1).at(300, 360).person(2).camera(1).at(640, 360).person(3).camera(2).at(700, 300).text();
  const auto everybodyIsShown = [&] {
    first.publish("/camera", R"({"fynCamId":1})");
    second.publish("/camera", R"({"fynCamId":2})");
    primary.publish("/cameras",
                    R"([{"isAttached":true,"ids":{"fynCamId":0}},{"isAttached":true,"ids":{"fynCamId":1}},)"
                    R"({"isAttached":true,"ids":{"fynCamId":2}}])");
    primary.publish("/ctl/tracking-mode", "PeopleFraming");
    primary.publish("/ctl", "reset-layouts");
    for (Watcher* const device : {&primary, &first, &second}) {
      device->publish("/ICDOut", people);
    }
    return primary.shows(R"("layoutType":"HEAD")") && first.shows(R"("fynCamId":1,)") &&
           second.shows(R"("fynCamId":2,)");
  };
  EXPECT_TRUE(eventually(everybodyIsShown)) << room.errorText();
  Process another(
      {sourceFolder() + "/tools/multi-device", "--port", std::to_string(port), "--programs", programFolder()},
      {});
  EXPECT_EQ(another.wait(), 2);
  EXPECT_NE(another.errorText().find("is in use; choose another with --port"), std::string::npos);
  room.signal(SIGTERM);
  EXPECT_EQ(room.wait(), 0);
  EXPECT_TRUE(eventually([&] { return !isListening(port); }));
}

}  // namespace
}  // namespace fyn::productionrules::testing
#endif
