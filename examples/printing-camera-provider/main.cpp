// A camera provider that composes no picture but prints each scene document that it is given as one line: an
// example for makers of providers, and a way to watch what the service hands over.
#include <sdbus-c++/sdbus-c++.h>

#include <CLI/CLI.hpp>
#include <exception>
#include <iostream>
#include <memory>
#include <string>

#include "platform/linux/dbus/DBusCameraProviders.h"

namespace {

using Names = fyn::productionrules::DBusCameraProviderNames;

std::unique_ptr<sdbus::IConnection> connectTo(const std::string& bus) {
  if (bus == "session") {
    return sdbus::createSessionBusConnection();
  }
  return bus == "system" ? sdbus::createSystemBusConnection()
                         : sdbus::createSessionBusConnectionWithAddress(bus);
}

void printScene(const std::string& json) {
  std::cout << json << '\n' << std::flush;
}

}  // namespace

// Without memory for the options there is nothing left to end well.
// NOLINTNEXTLINE(bugprone-exception-escape)
int main(int argc, char** argv) {
  CLI::App app("Prints every scene document that the production-rules service hands to its camera provider.");
  std::string bus = "session";
  app.add_option("--bus", bus, "D-Bus to serve on: session, system or an address")->capture_default_str();
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& fault) {
    return app.exit(fault) == 0 ? 0 : 2;
  }
  try {
    const std::unique_ptr<sdbus::IConnection> connection = connectTo(bus);
    const std::unique_ptr<sdbus::IObject> object = sdbus::createObject(*connection, Names::kPath);
    object->registerMethod(Names::kSetSceneJson)
        .onInterface(Names::kInterface)
        .withInputParamNames("document")
        .implementedAs(printScene);
    object->finishRegistration();
    // Last, so that whoever sees the name can call at once.
    connection->requestName(Names::kService);
    std::cerr << "serving " << Names::kService << " on the bus " << bus << '\n';
    connection->enterEventLoop();
  } catch (const std::exception& fault) {
    std::cerr << "printing-camera-provider: cannot serve on the bus " << bus << ": " << fault.what() << '\n';
    return 2;
  }
  return 0;
}
