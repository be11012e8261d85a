#include "platform/linux/BackendTables.h"

#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <stdexcept>

#include "platform/MemoryPropertyStore.h"
#include "platform/StderrLog.h"
#include "platform/embedded/InProcessBus.h"

namespace fyn::productionrules {

namespace {

class NoCameraProviders final : public ICameraProviders {
 public:
  std::shared_ptr<IQuilCameraProvider> getService(const std::string& /*instance*/) override {
    return nullptr;
  }
};

BuiltBus makeEmbeddedBus(const PlatformOptions& /*options*/, const std::shared_ptr<ServiceHealth>& health) {
  // Outlives its clients.
  static auto* const bus = new InProcessBus();
  if (health != nullptr) {
    health->setBus(true);
  }
  return {bus->connect(), [](const std::function<void()>& callback) { callback(); }};
}

std::shared_ptr<ICameraProviders> makeNoProviders(const PlatformOptions& /*options*/) {
  return std::make_shared<NoCameraProviders>();
}

std::shared_ptr<PropertyStore> makeMemoryProperties(const PlatformOptions& /*options*/) {
  return std::make_shared<MemoryPropertyStore>();
}

std::shared_ptr<PropertyStore> makeDefaultProperties(const PlatformOptions& options) {
  return (kMakeSqliteProperties != nullptr ? kMakeSqliteProperties : makeMemoryProperties)(options);
}

std::shared_ptr<LogSink> makeStderrLog(const PlatformOptions& /*options*/) {
  return std::make_shared<StderrLog>();
}

std::shared_ptr<void> makeNoMetrics(const PlatformOptions& /*options*/,
                                    const std::shared_ptr<const ServiceHealth>& /*health*/) {
  return nullptr;
}

/** Whether standard error of this process ends in the journal. */
bool isStandardErrorTheJournal() {
  const char* const stream = std::getenv("JOURNAL_STREAM");
  struct stat standardError {};
  if (stream == nullptr || fstat(STDERR_FILENO, &standardError) != 0) {
    return false;
  }
  return stream == std::to_string(standardError.st_dev) + ":" + std::to_string(standardError.st_ino);
}

std::shared_ptr<LogSink> makeAutomaticLog(const PlatformOptions& options) {
  const bool journal = kMakeJournalLog != nullptr && isStandardErrorTheJournal();
  return (journal ? kMakeJournalLog : makeStderrLog)(options);
}

const std::array<BusBackend, 3>& buses() {
  static const std::array<BusBackend, 3> rows{{{"embedded", makeEmbeddedBus},
                                               {"mqtt", kMakeMqttBus, "MQTT bus"},
                                               {"mqtts", kMakeMqttBus, "MQTT bus"}}};
  return rows;
}

const std::array<ProvidersBackend, 2>& providers() {
  static const std::array<ProvidersBackend, 2> rows{
      {{"none", makeNoProviders}, {"dbus", kMakeDBusProviders, "D-Bus camera provider"}}};
  return rows;
}

const std::array<PropertiesBackend, 3>& properties() {
  static const std::array<PropertiesBackend, 3> rows{{{"default", makeDefaultProperties},
                                                      {"memory", makeMemoryProperties},
                                                      {"file", kMakeSqliteProperties, "property file"}}};
  return rows;
}

const std::array<LogBackend, 4>& logs() {
  static const std::array<LogBackend, 4> rows{{{"auto", makeAutomaticLog},
                                               {"stderr", makeStderrLog},
                                               {"journal", kMakeJournalLog, "journal"},
                                               {"android", kMakeAndroidLog, "Android log"}}};
  return rows;
}

const std::array<MetricsBackend, 2>& metrics() {
  static const std::array<MetricsBackend, 2> rows{
      {{"none", makeNoMetrics}, {"address", kMakeMetrics, "Prometheus metrics"}}};
  return rows;
}

/** The kinds as a person reads them: "a, b or c". */
template <typename Rows>
std::string kindsOf(const Rows& rows) {
  std::string text;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    text += i == 0 ? "" : i + 1 < rows.size() ? ", " : " or ";
    text += rows[i].kind;
  }
  return text;
}

/** `option` with its name `what` is what asks for a row of this kind. */
template <typename Rows>
const typename Rows::value_type& rowOf(const Rows& rows, const std::string& kind, const char* what,
                                       const std::string& option) {
  for (const auto& row : rows) {
    if (row.kind != kind) {
      continue;
    }
    if (row.make == nullptr) {
      throw std::invalid_argument(std::string("this build has no ") + row.name);
    }
    return row;
  }
  throw std::invalid_argument(std::string(what) + " \"" + option + "\": expected " + kindsOf(rows));
}

/** What stands before the first ':'. */
std::string schemeOf(const std::string& address) {
  return address.substr(0, address.find(':'));
}

}  // namespace

const BusBackend& busBackend(const std::string& bus) {
  return rowOf(buses(), schemeOf(bus), "bus address", bus);
}

const ProvidersBackend& providersBackend(const std::string& provider) {
  return rowOf(providers(), schemeOf(provider), "camera provider", provider);
}

const PropertiesBackend& propertiesBackend(const std::string& path) {
  return rowOf(properties(),
               path.empty()       ? "default"
               : path == "memory" ? "memory"
                                  : "file",
               "property file", path);
}

const LogBackend& logBackend(const std::string& log) {
  return rowOf(logs(), log, "log", log);
}

const MetricsBackend& metricsBackend(const std::string& address) {
  return rowOf(metrics(), address.empty() ? "none" : "address", "metrics address", address);
}

}  // namespace fyn::productionrules
