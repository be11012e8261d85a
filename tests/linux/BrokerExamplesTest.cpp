// The broker configurations that people copy from conf/, each in a real broker.
#if PR_HAVE_MQTT
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <map>
#include <memory>

#include "platform/linux/mqtt/MqttPubSubClient.h"
#include "tests/linux/Servers.h"
#include "tests/linux/Subscription.h"
#include "tests/testing/Folders.h"
#include "tests/testing/NotingListener.h"

namespace fyn::productionrules::testing {
namespace {

using Lines = std::vector<std::string>;

const std::string kBrokerExamples = sourceFolder() + "/conf/mosquitto/";

MqttOptions optionsFor(const std::string& url, const std::string& user) {
  MqttOptions options;
  options.address = parseBusAddress(url);
  options.firstRetry = std::chrono::milliseconds(10);
  options.user = user;
  options.password = "secret";
  return options;
}

std::string passwordsOf(const std::vector<const char*>& users, const ScratchFolder& folder) {
  const std::string file = folder.write("passwords", "");
  for (const char* const user : users) {
    runTool({"mosquitto_passwd", "-b", file, user, "secret"});
  }
  return file;
}

std::string example(const std::string& name) {
  std::ifstream file(kBrokerExamples + name);
  return {std::istreambuf_iterator<char>(file), {}};
}

// Fails where the example does not have the text.
void replace(std::string& text, const std::string& part, const std::string& with) {
  const std::size_t at = text.find(part);
  ASSERT_NE(at, std::string::npos) << part;
  text.replace(at, part.size(), with);
}

TEST(BrokerExamples, AccessRightsGrantEachUserItsOwn) {
  const ScratchFolder folder;
  Broker broker("password_file " + passwordsOf({"director", "vision", "control", "viewer"}, folder) +
                "\nacl_file " + kBrokerExamples + "room.acl");
  NotingListener listener;
  std::map<std::string, std::unique_ptr<MqttPubSubClient>> clients;
  for (const char* const user : {"director", "vision", "control", "viewer"}) {
    clients[user] = std::make_unique<MqttPubSubClient>(optionsFor(broker.url("room-12"), user));
  }
  for (const char* const topic : {"/ICDOut", "/ctl", "/PRBOut"}) {
    clients["director"]->subscribe(topic, listener);
  }
  NotingListener ofViewer;
  clients["viewer"]->subscribe("/PRBOut", ofViewer);
  for (const auto& [user, client] : clients) {
    ASSERT_TRUE(isSubscribed(*client)) << user;
  }
  for (const auto& [user, client] : clients) {
    for (const char* const topic : {"/ICDOut", "/PRBOut", "/ctl"}) {
      client->publish(topic, user);
    }
  }
  clients["control"]->publish("/ctl", "end");
  clients["director"]->publish("/PRBOut", "end");
  EXPECT_TRUE(eventually([&] {
    return listener.has("/ctl end") && listener.has("/ICDOut vision") && ofViewer.has("/PRBOut end");
  }));
  Lines heard = listener.received();
  std::sort(heard.begin(), heard.end());
  EXPECT_EQ(heard, (Lines{"/ICDOut vision", "/ctl control", "/ctl end"}));
  EXPECT_EQ(ofViewer.received(), (Lines{"/PRBOut director", "/PRBOut end"}));
}

// A broker as device.conf describes it, but for what differs from device to device.
class Device {
 public:
  Device(const std::string& rights, const std::vector<const char*>& users, const Device* secondary = nullptr)
      : mPort(freePort()) {
    std::string settings = example("device.conf");
    if (secondary == nullptr) {
      settings.erase(settings.find("# To the device with camera 1"));
    } else {
      replace(settings, "side1.example:8883", "127.0.0.1:" + std::to_string(secondary->mPort));
      replace(settings, "CHANGE-ME", "secret");
      replace(settings, "/etc/mosquitto/certs/ca.pem", secondary->mAuthority.caFile());
    }
    replace(settings, "/etc/mosquitto/passwords", passwordsOf(users, mFolder));
    replace(settings, "/etc/mosquitto/room.acl", mFolder.write("room.acl", rights));
    replace(settings, "listener 1883 127.0.0.1", "");
    replace(settings, "listener 8883", "listener " + std::to_string(mPort) + " 127.0.0.1");
    replace(settings, "/etc/mosquitto/certs/this-device.pem", mAuthority.certificate("broker"));
    replace(settings, "/etc/mosquitto/certs/this-device.key", mAuthority.key("broker"));
    mBroker = std::make_unique<Broker>(settings);
  }

  MqttOptions fromOutside(const std::string& user) const {
    MqttOptions options = optionsFor("mqtts://127.0.0.1:" + std::to_string(mPort) + "/room-12", user);
    options.caFile = mAuthority.caFile();
    return options;
  }

 private:
  const ScratchFolder mFolder;
  const ThrowawayAuthority mAuthority;
  const int mPort;
  std::unique_ptr<Broker> mBroker;
};

TEST(BrokerExamples, DevicesTellEachOtherTheModeAndNothingElseEncrypted) {
  const std::string rights = example("room.acl");
  const Device side(
      rights + "\nuser main\ntopic write room-12/PRBOutSecondary/1\ntopic write room-12/ctl/tracking-mode\n",
      {"director", "main", "viewer"});
  const Device main(rights, {"director"}, &side);
  NotingListener listener;
  MqttPubSubClient viewer(side.fromOutside("viewer"));
  viewer.subscribe("/ctl/tracking-mode", listener);
  viewer.subscribe("/PRBOutSecondary/1", listener);
  viewer.subscribe("/PeopleCount", listener);
  ASSERT_TRUE(isSubscribed(viewer));
  MqttPubSubClient director(main.fromOutside("director"));
  // Until the one broker has found the other.
  EXPECT_TRUE(eventually([&] {
    director.publish("/PeopleCount", "3");
    director.publish("/ctl/tracking-mode", "2");
    director.publish("/PRBOutSecondary/1", "{}");
    return listener.has("/PRBOutSecondary/1 {}");
  }));
  EXPECT_TRUE(listener.has("/ctl/tracking-mode 2"));
  EXPECT_FALSE(listener.has("/PeopleCount 3"));
}

}  // namespace
}  // namespace fyn::productionrules::testing
#endif
