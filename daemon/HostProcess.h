#pragma once

#include <string>

namespace fyn::productionrules {

/**
 * Loads `library`, runs its entry function for the service `name` until SIGTERM or SIGINT, and tells the
 * service manager when it is ready and when it stops. Returns the exit status: 0 after a signal, 1 when the
 * service ended by itself. Throws std::invalid_argument with one clear line when the library cannot be used.
 */
int runHostProcess(const std::string& library, const std::string& name);

/** The library where it stands beside this program: ../lib/libproductionrules.so.0, in a package in the
 * folder of the processor. */
std::string defaultLibrary();

/** The configuration for a machine that has none: ../share/productionrules/recommended.conf. */
std::string recommendedConfigurationFile();

}  // namespace fyn::productionrules
