#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "model/Enums.h"

namespace fyn::productionrules {

/** A key that a preset sets. */
struct PresetLine {
  std::string_view key;
  std::int32_t value = 0;
  /** Why, where the key's own meaning does not say it; may be empty. */
  std::string_view why;
};

/** A configuration that has proved good; what it leaves out keeps its default. */
struct Preset {
  std::string_view name;
  /** The mode that it is for; none for a device that changes modes. */
  std::optional<FramingMode> mode;
  std::string_view purpose;
  std::vector<PresetLine> lines;
};

/** All presets, the recommended one first. */
const std::vector<Preset>& presets();

/** What a device has that names no configuration. */
const Preset& recommendedPreset();

/** Null when there is none of that name. */
const Preset* findPreset(std::string_view name);

/** The preset as the text of a configuration file. */
std::string presetConfiguration(const Preset& preset);

}  // namespace fyn::productionrules
