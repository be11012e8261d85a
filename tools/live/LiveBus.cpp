#include "tools/live/LiveBus.h"

#include <CLI/CLI.hpp>
#include <atomic>
#include <chrono>
#include <utility>

#include "platform/ErasableProperties.h"
#include "platform/ServiceState.h"
#include "platform/StderrLog.h"
#include "tools/base/UsageError.h"

namespace fyn::productionrules {

namespace {

constexpr std::chrono::seconds kAnswerLimit{5};
/** How long a wish to end may take to be seen. */
constexpr std::chrono::milliseconds kSlice{20};

PropertyStore& lastingStore(const PlatformOptions& options) {
  if (options.properties == "memory") {
    throw UsageError("a property in memory is gone with this command: name a file with --properties");
  }
  return ServiceState::current().properties();
}

void requireWritten(bool isWritten) {
  if (!isWritten) {
    throw std::runtime_error("the properties cannot be written");
  }
}

/** Says nothing for as long as all is well; then everything, so that a loss that is told is also told to be
 * over. */
class TroubleLog final : public LogSink {
 public:
  void write(LogPriority priority, const char* tag, const char* text) override {
    if (priority == LogPriority::error || priority == LogPriority::warning) {
      mHadTrouble = true;
    }
    if (mHadTrouble) {
      mLog.write(priority, tag, text);
    }
  }

 private:
  std::atomic<bool> mHadTrouble = false;
  StderrLog mLog;
};

bool concernsBus(const PlatformOptions::Row& row) {
  return row.field != &PlatformOptions::provider && row.field != &PlatformOptions::log &&
         row.field != &PlatformOptions::metrics && row.field != &PlatformOptions::properties;
}

template <typename Concerns>
void addOptions(CLI::App& command, PlatformOptions& options, Concerns concerns) {
  const PlatformOptions fromEnvironment = PlatformOptions::fromEnvironment();
  options.log = fromEnvironment.log;
  for (const PlatformOptions::Row& row : PlatformOptions::rows()) {
    if (concerns(row)) {
      options.*row.field = fromEnvironment.*row.field;
      if (row.option != nullptr) {
        command.add_option(row.option, options.*row.field,
                           std::string(row.meaning) + " (environment: " + row.environment + ")");
      }
    }
  }
}

}  // namespace

void addBusOptions(CLI::App& command, PlatformOptions& options) {
  options.properties = "memory";
  addOptions(command, options, concernsBus);
}

void addPropertiesOption(CLI::App& command, PlatformOptions& options) {
  addOptions(command, options,
             [](const PlatformOptions::Row& row) { return row.field == &PlatformOptions::properties; });
}

DevicePlatform toolPlatform(PlatformOptions options) {
  options.provider = "none";
  const bool isLogWanted = std::exchange(options.log, "stderr") == "stderr";
  options.metrics.clear();
  ServiceState& state = ServiceState::current();
  const int level = state.logLevel();
  try {
    if (isLogWanted) {
      return buildPlatform(options);
    }
    // The bus may connect before the log is exchanged.
    state.setLogLevel(LogLevels::kWarningLevel);
    DevicePlatform device = buildPlatform(options);
    state.setLog(std::make_shared<TroubleLog>());
    state.setLogLevel(level);
    return device;
  } catch (const std::invalid_argument& error) {
    throw UsageError(error.what());
  }
}

void storeProperty(const PlatformOptions& options, const std::string& key, const std::string& value) {
  requireWritten(lastingStore(options).set(key, value));
}

void unsetProperty(const PlatformOptions& options, const std::string& key) {
  auto* const erasable = dynamic_cast<ErasableProperties*>(&lastingStore(options));
  if (erasable == nullptr) {
    throw std::runtime_error("no property of this device can be taken out");
  }
  requireWritten(erasable->unset(key));
}

std::int64_t liveTimeMs() {
  return std::chrono::duration_cast<std::chrono::milliseconds>(
             std::chrono::steady_clock::now().time_since_epoch())
      .count();
}

LiveBus::LiveBus(const PlatformOptions& options) : mAddress(options.bus) {
  if (options.bus == "embedded") {
    throw UsageError("name the bus of the service with --bus mqtt://HOST[:PORT][/ROOM] or in PRB_BUS");
  }
  mDevice = toolPlatform(options);
}

LiveBus::~LiveBus() {
  client().close();
}

std::uint64_t LiveBus::close() {
  client().close();
  return mDevice.lostMessages ? mDevice.lostMessages() : 0;
}

std::future<void> LiveBus::askWhetherReady() {
  const auto ready = std::make_shared<std::promise<void>>();
  mDevice.whenBusReady([ready] { ready->set_value(); });
  return ready->get_future();
}

void LiveBus::waitUntilReady() {
  if (askWhetherReady().wait_for(kAnswerLimit) != std::future_status::ready) {
    throw std::runtime_error("the bus " + mAddress + " does not answer");
  }
}

void LiveBus::waitUntilReady(StopSignals& stop) {
  const auto end = std::chrono::steady_clock::now() + kAnswerLimit;
  const std::future<void> answer = askWhetherReady();
  while (answer.wait_for(kSlice) != std::future_status::ready && !stop.waitFor(std::chrono::nanoseconds(0))) {
    if (std::chrono::steady_clock::now() > end) {
      throw std::runtime_error("the bus " + mAddress + " does not answer");
    }
  }
}

}  // namespace fyn::productionrules
