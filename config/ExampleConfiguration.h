#pragma once

#include <string>

namespace fyn::productionrules {

/**
 * The text of conf/fyn.conf.example: every key of the configuration file with its default, under one line
 * that says its meaning and unit. Loading it changes nothing.
 */
std::string exampleConfiguration();

}  // namespace fyn::productionrules
