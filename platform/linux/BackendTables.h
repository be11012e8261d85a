#pragma once

#include <string>

#include "platform/Backends.h"

namespace fyn::productionrules {

/**
 * The one place that knows all backends: a table per interface. Each function gives the row that the text of
 * an option asks for, which can make something. Throws std::invalid_argument with one clear line when there
 * is no such row, or with the name of what is missing when this build leaves it out.
 */
const BusBackend& busBackend(const std::string& bus);
const ProvidersBackend& providersBackend(const std::string& provider);
const PropertiesBackend& propertiesBackend(const std::string& path);
const LogBackend& logBackend(const std::string& log);
const MetricsBackend& metricsBackend(const std::string& address);

}  // namespace fyn::productionrules
