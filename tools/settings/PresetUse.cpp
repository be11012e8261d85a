#include "tools/settings/PresetUse.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <map>

#include "config/Presets.h"
#include "platform/TextFile.h"
#include "tools/base/UsageError.h"

namespace fyn::productionrules {

namespace {

struct ModeName {
  const char* name;
  FramingMode mode;
};

constexpr std::array<ModeName, 4> kModes{{{"group", FramingMode::GroupFraming},
                                          {"people", FramingMode::PeopleFraming},
                                          {"speaker", FramingMode::SpeakerFraming},
                                          {"multistream", FramingMode::MultiStream}}};

std::string nameOf(FramingMode mode) {
  const auto* const row =
      std::find_if(kModes.begin(), kModes.end(), [mode](const ModeName& each) { return each.mode == mode; });
  return row != kModes.end() ? row->name : framingModeToString(mode);
}

std::string padded(std::string text, std::size_t width) {
  text.resize(std::max(text.size(), width), ' ');
  return text;
}

bool holdsAll(const std::map<std::string, std::string, std::less<>>& values, const Preset& preset) {
  return std::all_of(preset.lines.begin(), preset.lines.end(), [&](const PresetLine& line) {
    const auto value = values.find(line.key);
    return value != values.end() && value->second == std::to_string(line.value);
  });
}

}  // namespace

std::vector<std::string> framingModeNames() {
  std::vector<std::string> names;
  names.reserve(kModes.size());
  for (const ModeName& each : kModes) {
    names.emplace_back(each.name);
  }
  return names;
}

FramingMode framingModeNamed(const std::string& name) {
  const auto* const row =
      std::find_if(kModes.begin(), kModes.end(), [&](const ModeName& each) { return name == each.name; });
  if (row == kModes.end()) {
    throw UsageError("unknown mode " + name);
  }
  return row->mode;
}

std::string presetMisuse(std::string_view configuration, FramingMode mode) {
  std::map<std::string, std::string, std::less<>> values;
  forEachConfigLine(configuration, [&](std::string_view key, std::string_view value, int /*line*/) {
    values[std::string(key)] = value;
  });
  for (const Preset& preset : presets()) {
    if (preset.mode && *preset.mode != mode && holdsAll(values, preset)) {
      return "holds the preset " + std::string(preset.name) + ", which is for " + nameOf(*preset.mode) +
             " framing; in " + nameOf(mode) + " framing it makes worse pictures";
    }
  }
  return {};
}

std::string presetNamed(const std::string& name) {
  const Preset* const preset = findPreset(name);
  if (preset == nullptr) {
    throw UsageError("there is no preset " + name + "; 'prb config list' lists them");
  }
  return presetConfiguration(*preset);
}

std::string presetList() {
  constexpr std::size_t kNameWidth = 13;
  constexpr std::size_t kModeWidth = 8;
  std::string text = padded("PRESET", kNameWidth) + padded("MODE", kModeWidth) + "FOR\n";
  for (const Preset& preset : presets()) {
    text += padded(std::string(preset.name), kNameWidth) +
            padded(preset.mode ? nameOf(*preset.mode) : "any", kModeWidth) + std::string(preset.purpose) +
            "\n";
  }
  return text;
}

}  // namespace fyn::productionrules
