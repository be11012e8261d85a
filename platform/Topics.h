#pragma once

#include <array>
#include <string_view>

namespace fyn::productionrules {

/** Seen from the service. */
enum class TopicDirection { in, out, both };

/** What is known of a bus topic, whoever carries it. */
struct Topic {
  std::string_view name;
  TopicDirection direction;
  /** 0: arrives once or not at all, 1: at least once. */
  int qos;
  /** Whether a broker keeps the last message for whoever subscribes later. */
  bool retain;
  std::string_view meaning;
};

}  // namespace fyn::productionrules

/** Every bus topic that the service subscribes to, advertises or publishes. */
namespace fyn::productionrules::topics {

// Vision results and cameras
inline constexpr std::string_view kVisionResult = "/ICDOut";
inline constexpr std::string_view kCameraParameters = "/cameraParameters";
inline constexpr std::string_view kCameraParametersHead = "/cameraParameters/head";
inline constexpr std::string_view kCamera = "/camera";
inline constexpr std::string_view kCameras = "/cameras";
inline constexpr std::string_view kCameraMoved = "/FynCameraMoved";

// Control
inline constexpr std::string_view kControl = "/ctl";
inline constexpr std::string_view kRecordStart = "/ctl/recordStart";
inline constexpr std::string_view kRecordStop = "/ctl/recordStop";
inline constexpr std::string_view kTrackingMode = "/ctl/tracking-mode";
inline constexpr std::string_view kDebugLog = "/debug/log";
inline constexpr std::string_view kDebugLogCameras = "/debug/log/fyncamconfig";
inline constexpr std::string_view kDebugLogCameraId = "/debug/log/fyncamid";

// Published
inline constexpr std::string_view kScene = "/PRBOut";
inline constexpr std::string_view kDebugScene = "/PRBOutDebug";
inline constexpr std::string_view kSecondaryScene = "/PRBOutSecondary";
inline constexpr std::string_view kTimerDebug = "/TimerDebug";
inline constexpr std::string_view kDecisions = "/PRBDecisions";
inline constexpr std::string_view kPeopleCount = "/PeopleCount";
inline constexpr std::string_view kForwardMessage = "/ForwardMessage";
inline constexpr std::string_view kControlPassThrough = "/ctl-passthru-remote";

// A stream at frame rate is worth nothing late; a viewer that joins late is shown the last picture at once.
inline constexpr std::array kTable{
    Topic{kVisionResult, TopicDirection::in, 0, false, "who is seen in one video frame"},
    Topic{kCameraParameters, TopicDirection::in, 1, false, "parameters of a camera, logged"},
    Topic{kCameraParametersHead, TopicDirection::in, 1, false, "image size of the own camera, of camera N"},
    Topic{kCamera, TopicDirection::in, 1, false, "which camera is the device's own"},
    Topic{kCameras, TopicDirection::in, 1, false, "all cameras"},
    Topic{kCameraMoved, TopicDirection::in, 1, false, "a camera was moved"},
    Topic{kControl, TopicDirection::in, 1, false, "commands to the service"},
    Topic{kTrackingMode, TopicDirection::both, 1, false, "the tracking mode"},
    Topic{kRecordStart, TopicDirection::in, 1, false, "a recording begins"},
    Topic{kRecordStop, TopicDirection::in, 1, false, "a recording has ended"},
    Topic{kDebugLog, TopicDirection::in, 1, false, "writes a part of the state into the log"},
    Topic{kDebugLogCameras, TopicDirection::in, 1, false, "writes the cameras into the log"},
    Topic{kDebugLogCameraId, TopicDirection::in, 1, false,
          "writes the number of the own camera into the log"},
    Topic{kScene, TopicDirection::out, 1, true, "scene document"},
    Topic{kSecondaryScene, TopicDirection::both, 1, false, "scene document of camera N"},
    Topic{kDebugScene, TopicDirection::out, 0, false, "scene document with debug rectangles"},
    Topic{kPeopleCount, TopicDirection::out, 1, true, "number of people"},
    Topic{kTimerDebug, TopicDirection::out, 0, false, "the running timers"},
    Topic{kDecisions, TopicDirection::out, 0, false, "the reason of each decision"},
    Topic{kForwardMessage, TopicDirection::out, 1, false, "topics to be carried to the other devices"},
    Topic{kControlPassThrough, TopicDirection::out, 1, false, "whether this is the primary device"},
};

/** Advertised at the start, in this order. */
inline constexpr std::array kAdvertised{kControlPassThrough, kScene, kSecondaryScene, kTrackingMode};

}  // namespace fyn::productionrules::topics

namespace fyn::productionrules {

/** The texts of the control topic. */
namespace control {
inline constexpr std::string_view kConfigChange = "config-change";
inline constexpr std::string_view kResetLayouts = "reset-layouts";
inline constexpr std::string_view kDumpDebug = "dump-debug";
}  // namespace control

}  // namespace fyn::productionrules
