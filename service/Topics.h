#pragma once

#include <array>
#include <string_view>

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
inline constexpr std::string_view kPeopleCount = "/PeopleCount";
inline constexpr std::string_view kForwardMessage = "/ForwardMessage";
inline constexpr std::string_view kControlPassThrough = "/ctl-passthru-remote";

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
