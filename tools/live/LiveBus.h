#pragma once

#include <cstdint>
#include <future>
#include <string>

#include "platform/linux/PlatformFactory.h"
#include "tools/base/StopSignals.h"

namespace CLI {
class App;
}

namespace fyn::productionrules {

/** Gives `command` the options of the bus, and keeps it off the machine's properties. Environment variables
 * give the defaults. */
void addBusOptions(CLI::App& command, PlatformOptions& options);

/** Gives `command` the option of the properties, after those of the bus when it has them. */
void addPropertiesOption(CLI::App& command, PlatformOptions& options);

/** The platform of a tool, without a camera provider. It logs when something goes wrong, and with
 * PRB_LOG=stderr all the time. Raises UsageError when an option cannot be used. */
DevicePlatform toolPlatform(PlatformOptions options);

/**
 * Sets a property where the service finds it; after `toolPlatform` with the same options. Raises UsageError
 * when they keep the properties in the memory of a process, and std::runtime_error when they cannot be
 * written.
 */
void storeProperty(const PlatformOptions& options, const std::string& key, const std::string& value);

/** Takes a property out where the service finds it, so that its default holds; else as `storeProperty`. */
void unsetProperty(const PlatformOptions& options, const std::string& key);

/** Milliseconds of a clock that nobody sets. */
std::int64_t liveTimeMs();

/**
 * A connection to the bus of a running service. Raises UsageError when no bus outside this process is named,
 * and std::runtime_error when it does not answer within five seconds.
 */
class LiveBus {
 public:
  explicit LiveBus(const PlatformOptions& options);

  /** Sends what is queued and ends all deliveries. */
  ~LiveBus();
  LiveBus(const LiveBus&) = delete;
  LiveBus& operator=(const LiveBus&) = delete;

  com::quil::pubsub::IPubSubClient& client() { return *mDevice.platform.bus; }

  /** Sends what is queued, ends all deliveries, and says how many messages the bus never took. */
  std::uint64_t close();

  /** Waits until subscriptions made so far are in force. */
  void waitUntilReady();

  /** The same; returns sooner when somebody wishes to end. Whoever holds the signals back needs this one. */
  void waitUntilReady(StopSignals& stop);

 private:
  std::future<void> askWhetherReady();

  DevicePlatform mDevice;
  const std::string mAddress;
};

}  // namespace fyn::productionrules
