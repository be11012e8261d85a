#pragma once

#include <cstdint>
#include <nlohmann/json_fwd.hpp>
#include <string>

namespace fyn::productionrules {

enum class FramingMode : std::int32_t {
  Off = 0,
  GroupFraming = 1,
  SpeakerFraming = 2,
  PresenterTracking = 3,
  PeopleFraming = 4,
  MultiStream = 5,
};

/** The kind of a layout, or of one frame in it. */
enum class FramingType : std::int32_t {
  HEAD = 0,
  PROXIMITY = 1,
  LARGE_PROXIMITY = 2,
  GROUP = 3,
  PARTIAL_GROUP = 4,
  SUBSET_SPEAKER = 5,
  ROOM = 6,
  NONE = 7,
};

/** The shape of a frame around its heads. It selects the guide lines and off-centre triggers of the
 * configuration. */
enum FrameLayout : std::int32_t {
  kFrameLayoutHeadSingle = 0,
  kFrameLayoutHeadSquare = 1,
  kFrameLayoutHeadWide = 2,
  kFrameLayoutHeadColumnNarrow = 3,
  kFrameLayoutHeadColumnHalf = 4,
  kFrameLayoutProximityColumnNarrow = 5,
  kFrameLayoutProximityColumnHalf = 6,
  kFrameLayoutProximityColumnWide = 7,
  kFrameLayoutProximitySingleWide = 8,
  kFrameLayoutNone = 9,
};

/** Where a head, or a group of heads, stands relative to its frame. */
enum class HeadPosition : std::int32_t {
  HEAD_ON_EDGE = 0,
  HEAD_OFF_CENTER = 1,
  HEAD_OUTSIDE = 2,
  HEAD_LEFT = 3,
  GROUP_MOVE_CLOSE = 4,
  GROUP_HEAD_LEFT = 5,
  GROUP_HEAD_ON_EDGE = 6,
  GROUP_HEAD_OUTSIDE = 7,
  CENTER = 8,
};

/** The direction in which a face looks. */
enum class PoseGaze : std::int32_t { unknown = 0, center = 1, left = 2, right = 3 };

/** The part that a device plays among the cameras of a room. */
enum class FynOperatingMode : std::int32_t {
  /** One camera on its own. */
  Standalone = 0,
  /** Decides for its own camera and for the secondary ones. */
  Primary = 1,
  /** Applies what a primary device sends. */
  Secondary = 2,
};

std::string framingModeToString(FramingMode mode);

/** The mode of a text, compared whole and case-sensitively; Off for any other text. */
FramingMode stringToFramingMode(const std::string& text);

/** Has no text for LARGE_PROXIMITY, which is written "NONE" as any unknown value is. For hosts, as the other
 * functions that make strings; log lines use the texts. */
std::string layoutToString(FramingType type);

/** Like layoutToString, for printf formats. The text lives as long as the process. */
const char* layoutToText(FramingType type);

std::string frameLayoutToString(FrameLayout layout);

/** The enumerator's name as it stands in JSON documents, such as "kFrameLayoutHeadSingle". */
const char* frameLayoutName(FrameLayout layout);

/** The JSON string of a type, LARGE_PROXIMITY included. */
const char* framingTypeName(FramingType type);

std::string headPositionInString(HeadPosition position);
const char* headPositionText(HeadPosition position);

std::string getGazeString(PoseGaze gaze);

/** An unknown value gives the first entry of the enumeration; no error is raised. */
void from_json(const nlohmann::json& document, FramingType& type);
void from_json(const nlohmann::json& document, FrameLayout& layout);

}  // namespace fyn::productionrules
