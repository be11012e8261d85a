#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "model/Enums.h"

namespace fyn::productionrules {

/** The framing modes as command lines name them: "group", "people", "speaker", "multistream". */
std::vector<std::string> framingModeNames();

/** The mode of such a name. Raises UsageError for any other text. */
FramingMode framingModeNamed(const std::string& name);

/** What is wrong when the text of a configuration file serves a device in that mode: it is a preset for
 * another one. "" for nothing. */
std::string presetMisuse(std::string_view configuration, FramingMode mode);

/** The text of the preset's file. Raises UsageError when there is none of that name. */
std::string presetNamed(const std::string& name);

/** A line per preset: name, mode, purpose. */
std::string presetList();

}  // namespace fyn::productionrules
