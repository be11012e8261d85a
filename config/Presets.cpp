#include "config/Presets.h"

#include <algorithm>

namespace fyn::productionrules {

namespace {

constexpr std::string_view kInShape =
    "Side, top and bottom belong together: (1 + side)^2 = (1 + top)(1 + bottom) keeps the picture in shape";

std::vector<Preset> makePresets() {
  return {
      {"recommended",
       std::nullopt,
       "for a device that changes modes; what it has without a configuration",
       {{"persist.feature.steadyframing", 1,
         "People framing for rooms in which people walk and detectors err"},
        {"persist.pf.fdtimers.groupframe.headleft", 30000, ""},
        {"persist.pf.fdtimers.layoutchange.gftoother", 12000, "Tiles when the room has come to rest"},
        {"persist.feature.animation.enableEase", 1, "A move within a shot is seen as one"},
        {"animation.ease.duration", 400, ""},
        {"persist.sf.fdtimers.layoutchange.othertoss", 300, "Speaker framing: closer, and sooner so"},
        {"persist.sf.fdtimers.tighten", 60000, ""},
        {"persist.sf.fdtimers.tightenwide", 4600, ""},
        {"persist.fdtimers.groupframe.outside", 500,
         "Group framing: sooner where somebody is lost, else calmer"},
        {"persist.fdtimers.groupframe.onedge", 4000, ""},
        {"persist.fdtimers.groupframe.headleft", 30000, ""},
        {"persist.fdtimers.groupframe.movecloser", 15000, ""},
        {"persist.fdtimers.layoutchange.gftoother", 60000, ""},
        {"persist.fdtimers.layoutchange.rmtoother", 1000, ""}}},
      {"seated",
       FramingMode::GroupFraming,
       "people who stay seated: large heads, few moves",
       {{"persist.fdtimers.groupframe.outside", 1000, ""},
        {"persist.fdtimers.groupframe.headleft", 30000, ""},
        {"persist.fdtimers.groupframe.movecloser", 20000, ""},
        {"persist.fdtimers.layoutchange.gftoother", 60000, ""},
        {"persist.fdtimers.layoutchange.rmtoother", 3000, ""},
        {"persist.fdtimers.headboundbox.outofframe", 500, ""},
        {"persist.fdtimers.headbuffer.onedge", 0, ""},
        {"persist.vendor.headbuffer.buffsize.eachside", 75, ""},
        {"persist.vendor.groupboundary.buffsize.side", 4, kInShape},
        {"persist.vendor.groupboundary.buffsize.top", 0, ""},
        {"persist.vendor.groupboundary.buffsize.bottom", 8, ""},
        {"persist.framelayout.headsingle.topline", 10, "A person alone"}}},
      {"standard",
       FramingMode::GroupFraming,
       "a meeting in which now and then somebody stands up, comes or goes",
       {{"persist.fdtimers.groupframe.outside", 500, ""},
        {"persist.fdtimers.groupframe.onedge", 4000, ""},
        {"persist.fdtimers.groupframe.headleft", 30000, ""},
        {"persist.fdtimers.groupframe.movecloser", 15000, ""},
        {"persist.fdtimers.layoutchange.gftoother", 60000, ""},
        {"persist.fdtimers.layoutchange.rmtoother", 1000, ""},
        {"persist.fdtimers.headboundbox.outofframe", 300, ""},
        {"persist.fdtimers.headbuffer.onedge", 0, ""},
        {"persist.vendor.headbuffer.buffsize.eachside", 100, ""},
        {"persist.vendor.groupboundary.buffsize.side", 6, kInShape},
        {"persist.vendor.groupboundary.buffsize.top", 0, ""},
        {"persist.vendor.groupboundary.buffsize.bottom", 12, ""},
        {"persist.framelayout.headsingle.topline", 35, "A person alone"},
        {"persist.framelayout.headsingle.bottomline", 45, ""}}},
      {"walking",
       FramingMode::GroupFraming,
       "people who walk about: nobody is lost, heads are smaller",
       {{"persist.fdtimers.groupframe.outside", 200, ""},
        {"persist.fdtimers.groupframe.headleft", 60000, ""},
        {"persist.fdtimers.groupframe.movecloser", 15000, ""},
        {"persist.vendor.groupboundary.buffsize.movecloser", 40, ""},
        {"persist.fdtimers.layoutchange.gftoother", 60000, ""},
        {"persist.fdtimers.layoutchange.rmtoother", 1000, ""},
        {"persist.fdtimers.headboundbox.outofframe", 300, ""},
        {"persist.fdtimers.headbuffer.onedge", 0, ""},
        {"persist.vendor.headbuffer.buffsize.eachside", 100, ""},
        {"persist.vendor.groupboundary.buffsize.side", 12, kInShape},
        {"persist.vendor.groupboundary.buffsize.top", 3, ""},
        {"persist.vendor.groupboundary.buffsize.bottom", 22, ""},
        {"persist.framelayout.headsingle.topline", 35, "A person alone"},
        {"persist.framelayout.headsingle.bottomline", 45, ""}}},
      {"people",
       FramingMode::PeopleFraming,
       "people come, go and walk about: calmer, tiles come later",
       {{"persist.feature.steadyframing", 1, ""},
        {"persist.pf.fdtimers.groupframe.headleft", 30000, ""},
        {"persist.pf.fdtimers.layoutchange.gftoother", 20000,
         "Tiles when the room has come to rest, not between two walks"},
        {"persist.pf.fdtimers.layoutchange.headtoother", 2000, "Whom tiles do not show is shown sooner"}}},
      {"speaker",
       FramingMode::SpeakerFraming,
       "closer to who speaks, for a few more changes",
       {{"persist.feature.steadyframing", 1, ""},
        {"persist.sf.fdtimers.layoutchange.othertoss", 500, "From the group to the first speaker"},
        {"persist.sf.fdtimers.tightenwide", 3000,
         "A wide picture closes in when one has spoken alone for so long"}}},
  };
}

}  // namespace

const std::vector<Preset>& presets() {
  static const std::vector<Preset> all = makePresets();
  return all;
}

const Preset& recommendedPreset() {
  return presets().front();
}

const Preset* findPreset(std::string_view name) {
  const auto preset = std::find_if(presets().begin(), presets().end(),
                                   [name](const Preset& each) { return each.name == name; });
  return preset != presets().end() ? &*preset : nullptr;
}

std::string presetConfiguration(const Preset& preset) {
  std::string text = "# " + std::string(preset.name);
  text += preset.mode ? ", for " + framingModeToString(*preset.mode) : "";
  text.append(": ").append(preset.purpose).append("\n");
  for (const PresetLine& line : preset.lines) {
    if (!line.why.empty()) {
      text.append("# ").append(line.why).append("\n");
    }
    text.append(line.key).append("=").append(std::to_string(line.value)).append("\n");
  }
  return text;
}

}  // namespace fyn::productionrules
