#pragma once

#include <functional>
#include <memory>

#include "platform/Platform.h"
#include "platform/linux/PlatformOptions.h"

namespace fyn::productionrules {

/** What a build may lack. */
enum class PlatformBackend { mqtt, dbus, sqlite, journal, androidLog };

/** Throws std::invalid_argument, with the name of what is missing, when this build lacks `backend`. */
void requireBackend(PlatformBackend backend);

/** The platform of one service. */
class BuiltPlatform {
 public:
  virtual ~BuiltPlatform() = default;
  virtual const Platform& platform() const = 0;

  /** Calls `callback` once, on any thread, as soon as the bus delivers what was subscribed so far. */
  virtual void whenBusReady(std::function<void()> callback) = 0;
};

/**
 * The one place that chooses backends: makes the objects that `options` ask for and installs log and
 * properties for the whole process, where they stay until it ends. Throws std::invalid_argument as
 * `PlatformOptions::validate` does.
 */
std::unique_ptr<BuiltPlatform> buildPlatform(const PlatformOptions& options);

}  // namespace fyn::productionrules
