#pragma once

#include "platform/DevicePlatform.h"
#include "platform/linux/PlatformOptions.h"

namespace fyn::productionrules {

/**
 * Makes the objects that `options` ask for, for a client that is no service itself, and installs log and
 * properties for the whole process. Throws std::invalid_argument as `PlatformOptions::validate` does.
 */
DevicePlatform buildPlatform(const PlatformOptions& options);

}  // namespace fyn::productionrules
