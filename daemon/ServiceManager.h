#pragma once

#include <string>

namespace fyn::productionrules {

/** Sends a notice ("READY=1") to the service manager that has started this process; does nothing without
 * one. */
void tellServiceManager(const std::string& notice);

}  // namespace fyn::productionrules
