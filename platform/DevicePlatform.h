#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include "platform/Platform.h"

namespace fyn::productionrules {

/** What a device gives to one service. */
struct DevicePlatform {
  Platform platform;
  /** Calls `callback` once, on any thread, as soon as the bus delivers what was subscribed so far. */
  std::function<void(std::function<void()> callback)> whenBusReady;
  /** After the bus is closed: how many messages were published and never taken. Null for a bus that takes
   * all. */
  std::function<std::uint64_t()> lostMessages = nullptr;
  /** What answers who asks how the service is, for as long as it is kept. Null for nothing. */
  std::shared_ptr<void> metrics = nullptr;
};

/**
 * The platform of this device. The folder of each device defines it, and the build links one of them. Also
 * installs log and properties for the whole process. Throws std::invalid_argument with one clear line when
 * what the host asks for cannot be used.
 */
DevicePlatform buildPlatform();

}  // namespace fyn::productionrules
