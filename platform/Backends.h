#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string_view>

#include "platform/CameraProvider.h"
#include "platform/LogSink.h"
#include "platform/PropertyStore.h"
#include "platform/PubSub.h"
#include "platform/ServiceHealth.h"

namespace fyn::productionrules {

struct PlatformOptions;

/** A client of a bus. */
struct BuiltBus {
  std::shared_ptr<com::quil::pubsub::IPubSubClient> client;
  /** Calls `callback` once, on any thread, as soon as the bus delivers what was subscribed so far. */
  std::function<void(std::function<void()> callback)> whenReady;
  /** After `close`: how many messages were published and never taken. Null for a bus that takes all. */
  std::function<std::uint64_t()> lostMessages = nullptr;
};

/** One way to get what stands behind an interface. */
template <typename Made, typename... More>
struct Backend {
  using Maker = Made (*)(const PlatformOptions& options, More... more);

  /** What an option names it by: the scheme of an address, or a word. */
  std::string_view kind;
  /** Null when this build leaves it out. */
  Maker make;
  /** What is said to be missing then; null for what no build can lack. */
  const char* name = nullptr;
};

/** A bus notes its connection in the health of the service that uses it, and may tell others of it; null for
 * a client that is no service. */
using BusBackend = Backend<BuiltBus, const std::shared_ptr<ServiceHealth>&>;
using ProvidersBackend = Backend<std::shared_ptr<ICameraProviders>>;
using PropertiesBackend = Backend<std::shared_ptr<PropertyStore>>;
using LogBackend = Backend<std::shared_ptr<LogSink>>;
/** What tells how the service is; null when it cannot, which is then logged. */
using MetricsBackend = Backend<std::shared_ptr<void>, const std::shared_ptr<const ServiceHealth>&>;

/**
 * The makers that a build may leave out. Each is defined in the folder of its kind; for one that is left out
 * the build itself defines a null pointer.
 */
extern const BusBackend::Maker kMakeMqttBus;
extern const ProvidersBackend::Maker kMakeDBusProviders;
extern const PropertiesBackend::Maker kMakeSqliteProperties;
extern const LogBackend::Maker kMakeJournalLog;
extern const LogBackend::Maker kMakeAndroidLog;
extern const MetricsBackend::Maker kMakeMetrics;

}  // namespace fyn::productionrules
