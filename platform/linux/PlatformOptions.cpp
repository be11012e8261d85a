#include "platform/linux/PlatformOptions.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>

#include "platform/linux/BackendTables.h"
#include "platform/linux/BusAddress.h"

namespace fyn::productionrules {

namespace {

void requireReadable(const std::string& path, const char* what) {
  if (path.empty()) {
    return;
  }
  // The standard libraries differ in what opening a folder gives.
  std::error_code ignored;
  if (std::filesystem::is_directory(path, ignored) || !std::ifstream(path)) {
    throw std::invalid_argument(std::string(what) + " \"" + path + "\" cannot be read");
  }
}

bool isDBusAddress(const std::string& bus) {
  return bus == "session" || bus == "system" || bus.rfind("unix:", 0) == 0 || bus.rfind("tcp:", 0) == 0;
}

}  // namespace

const std::array<PlatformOptions::Row, 11>& PlatformOptions::rows() {
  using Options = PlatformOptions;
  static constexpr std::array<Row, 11> kRows{{
      {&Options::bus, "PRB_BUS", "--bus",
       "message bus: mqtt://HOST[:PORT][/ROOM], mqtts://HOST[:PORT][/ROOM], or embedded for one in the "
       "process"},
      {&Options::provider, "PRB_PROVIDER", "--provider",
       "camera provider: none, dbus:session, dbus:system or dbus:ADDRESS"},
      {&Options::properties, "PRB_PROPERTIES", "--properties",
       "file of the system properties, or memory for this process alone; default: the machine's file"},
      {&Options::log, "PRB_LOG", "--log", "where log lines go: auto, stderr, journal or android"},
      {&Options::metrics, "PRB_METRICS", "--metrics",
       "where Prometheus may ask how the service is, by HTTP: PORT, for programs of this machine, or "
       "HOST:PORT; default: nowhere"},
      {&Options::mqttUser, "PRB_MQTT_USER", "--mqtt-user", "user name at the broker"},
      {&Options::mqttPassword, "PRB_MQTT_PASSWORD", nullptr, "password at the broker"},
      {&Options::mqttPasswordFile, "PRB_MQTT_PASSWORD_FILE", "--mqtt-password-file",
       "file whose first line is the password at the broker; PRB_MQTT_PASSWORD is the password itself"},
      {&Options::mqttCaFile, "PRB_MQTT_CA", "--mqtt-ca",
       "certificate authorities for mqtts, PEM; default: those of the machine"},
      {&Options::mqttCertificateFile, "PRB_MQTT_CERT", "--mqtt-cert", "certificate of this client, PEM"},
      {&Options::mqttKeyFile, "PRB_MQTT_KEY", "--mqtt-key", "key of this client's certificate, PEM"},
  }};
  return kRows;
}

PlatformOptions PlatformOptions::fromEnvironment() {
  PlatformOptions options;
  for (const Row& row : rows()) {
    const char* const value = std::getenv(row.environment);
    if (value != nullptr && *value != '\0') {
      options.*row.field = value;
    }
  }
  return options;
}

std::string PlatformOptions::password() const {
  if (mqttPasswordFile.empty()) {
    return mqttPassword;
  }
  std::string firstLine;
  std::ifstream file(mqttPasswordFile);
  std::getline(file, firstLine);
  if (!firstLine.empty() && firstLine.back() == '\r') {
    firstLine.pop_back();
  }
  return firstLine;
}

void PlatformOptions::validate() const {
  if (bus != "embedded") {
    parseBusAddress(bus);
  }
  busBackend(bus);
  if (provider != "none" && (provider.rfind("dbus:", 0) != 0 || !isDBusAddress(provider.substr(5)))) {
    throw std::invalid_argument("camera provider \"" + provider +
                                "\": expected none, dbus:session, dbus:system or dbus:unix:path=PATH");
  }
  providersBackend(provider);
  logBackend(log);
  metricsBackend(metrics);
  if (!metrics.empty() && !isPort(metrics.substr(metrics.rfind(':') + 1))) {
    throw std::invalid_argument("metrics address \"" + metrics + "\": expected PORT or HOST:PORT");
  }
  propertiesBackend(properties);
  requireReadable(mqttPasswordFile, "password file");
  if (!mqttPasswordFile.empty() && password().empty()) {
    throw std::invalid_argument("password file \"" + mqttPasswordFile +
                                "\" has no password in its first line");
  }
  requireReadable(mqttCaFile, "certificate authority file");
  requireReadable(mqttCertificateFile, "client certificate file");
  requireReadable(mqttKeyFile, "client key file");
  if (mqttCertificateFile.empty() != mqttKeyFile.empty()) {
    throw std::invalid_argument("a client certificate needs both the certificate file and the key file");
  }
}

}  // namespace fyn::productionrules
