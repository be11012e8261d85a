#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>

namespace fyn::productionrules::fields {

/**
 * The compact text of a document for a log line. A document that is nested more than 1000 deep gives a short
 * note instead: the library writes by recursion, and a sender must not be able to exhaust the stack.
 */
std::string logText(const nlohmann::json& document);

}  // namespace fyn::productionrules::fields
