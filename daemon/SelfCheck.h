#pragma once

#include <iosfwd>
#include <string>

#include "platform/linux/PlatformOptions.h"

namespace fyn::productionrules {

/**
 * Says on `out`, in one line each, whether configuration file, property store, bus and camera provider can be
 * used; waits at most five seconds for the bus. False when one of them cannot. Throws std::invalid_argument
 * for options that cannot be used. Takes the log of the process for itself, where the backends say what is
 * wrong.
 */
bool checkInstallation(const std::string& configuration, const PlatformOptions& options, std::ostream& out);

}  // namespace fyn::productionrules
