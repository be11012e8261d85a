#pragma once

#include "platform/DevicePlatform.h"
#include "platform/linux/PlatformOptions.h"

namespace fyn::productionrules {

/**
 * Makes the objects that `options` ask for and installs log and properties for the whole process. Throws
 * std::invalid_argument as `PlatformOptions::validate` does.
 */
DevicePlatform buildPlatform(const PlatformOptions& options);

}  // namespace fyn::productionrules
