#include "model/Enums.h"

#include <array>
#include <nlohmann/json.hpp>

namespace fyn::productionrules {

namespace {

// Each table stands in the order of the values, which begin at 0, so a value is its row.
constexpr std::array<const char*, 6> kFramingModeTexts{
    {"Off", "GroupFraming", "SpeakerFraming", "PresenterTracking", "PeopleFraming", "MultiStream"}};

struct EnumRow {
  const char* jsonName;
  const char* text;
};

// LARGE_PROXIMITY is written "NONE" on purpose; only documents know its name.
constexpr std::array<EnumRow, 8> kFramingTypes{{{"HEAD", "HEAD"},
                                                {"PROXIMITY", "PROXIMITY"},
                                                {"LARGE_PROXIMITY", "NONE"},
                                                {"GROUP", "GROUP"},
                                                {"PARTIAL_GROUP", "PARTIAL_GROUP"},
                                                {"SUBSET_SPEAKER", "SUBSET_SPEAKER"},
                                                {"ROOM", "ROOM"},
                                                {"NONE", "NONE"}}};

// "ProximityColumnHal" is what logs have always shown; readers of logs look for it.
constexpr std::array<EnumRow, 10> kFrameLayouts{
    {{"kFrameLayoutHeadSingle", "HeadSingle"},
     {"kFrameLayoutHeadSquare", "HeadSquare"},
     {"kFrameLayoutHeadWide", "HeadWide"},
     {"kFrameLayoutHeadColumnNarrow", "HeadColumnNarrow"},
     {"kFrameLayoutHeadColumnHalf", "HeadColumnHalf"},
     {"kFrameLayoutProximityColumnNarrow", "ProximityColumnNarrow"},
     {"kFrameLayoutProximityColumnHalf", "ProximityColumnHal"},
     {"kFrameLayoutProximityColumnWide", "ProximityColumnWide"},
     {"kFrameLayoutProximitySingleWide", "ProximitySingleWide"},
     {"kFrameLayoutNone", "None"}}};

constexpr std::array<const char*, 9> kHeadPositionTexts{
    {"HEAD_ON_EDGE", "HEAD_OFF_CENTER", "HEAD_OUTSIDE", "HEAD_LEFT", "GROUP_MOVE_CLOSE", "GROUP_HEAD_LEFT",
     "GROUP_HEAD_ON_EDGE", "GROUP_HEAD_OUTSIDE", "CENTER"}};

constexpr std::array<const char*, 4> kGazeTexts{{"unknown", "center", "left", "right"}};

// The row of a value; `otherwise` for a value outside the table (a negative one is a large row number).
template <typename Row, std::size_t kCount, typename Enum>
const Row& rowOf(const std::array<Row, kCount>& table, Enum value, const Row& otherwise) {
  const auto row = static_cast<std::size_t>(value);
  return row < kCount ? table[row] : otherwise;
}

template <typename Enum, std::size_t kCount>
Enum valueOf(const std::array<EnumRow, kCount>& table, const nlohmann::json& document) {
  if (const auto* const name = document.get_ptr<const std::string*>()) {
    for (std::size_t row = 0; row < kCount; ++row) {
      if (*name == table[row].jsonName) {
        return static_cast<Enum>(row);
      }
    }
  }
  return static_cast<Enum>(0);
}

const EnumRow& rowOf(FramingType type) {
  return rowOf(kFramingTypes, type, kFramingTypes.back());
}
const EnumRow& rowOf(FrameLayout layout) {
  return rowOf(kFrameLayouts, layout, kFrameLayouts.back());
}

}  // namespace

std::string framingModeToString(FramingMode mode) {
  return rowOf(kFramingModeTexts, mode, kFramingModeTexts.front());
}

FramingMode stringToFramingMode(const std::string& text) {
  for (std::size_t row = 1; row < kFramingModeTexts.size(); ++row) {
    if (text == kFramingModeTexts[row]) {
      return static_cast<FramingMode>(row);
    }
  }
  return FramingMode::Off;
}

std::string layoutToString(FramingType type) {
  return layoutToText(type);
}
const char* layoutToText(FramingType type) {
  return rowOf(type).text;
}
const char* framingTypeName(FramingType type) {
  return rowOf(type).jsonName;
}

std::string frameLayoutToString(FrameLayout layout) {
  return rowOf(layout).text;
}
const char* frameLayoutName(FrameLayout layout) {
  return rowOf(layout).jsonName;
}

std::string headPositionInString(HeadPosition position) {
  return headPositionText(position);
}
const char* headPositionText(HeadPosition position) {
  static constexpr const char* kInvalid = "INVALID";
  return rowOf(kHeadPositionTexts, position, kInvalid);
}

std::string getGazeString(PoseGaze gaze) {
  static constexpr const char* kNoText = "";
  return rowOf(kGazeTexts, gaze, kNoText);
}

void from_json(const nlohmann::json& document, FramingType& type) {
  type = valueOf<FramingType>(kFramingTypes, document);
}

void from_json(const nlohmann::json& document, FrameLayout& layout) {
  layout = valueOf<FrameLayout>(kFrameLayouts, document);
}

}  // namespace fyn::productionrules
