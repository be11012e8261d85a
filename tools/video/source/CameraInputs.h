#pragma once

#include <string>
#include <vector>

namespace fyn::productionrules::video {

/** Where a camera's pictures come from, and what part of the room they show. */
struct CameraInput {
  /** A video file, a device such as /dev/video0, or a numbered image sequence such as room-%04d.png. */
  std::string input;
  /**
   * Where the left and the right edge of the picture lie on one horizontal axis through the room, the same
   * for all cameras, in any unit. Cameras that show the same part of the axis see the same persons.
   */
  double from = 0;
  double to = 1;
};

/**
 * The cameras of a side-by-side calibration file:
 *
 *     {"cameras": [{"input": "left.mp4", "from": 0, "to": 60}, {"input": "right.mp4", "from": 40, "to":
 * 100}]}
 *
 * The cameras stand side by side at the same height and look the same way. Relative inputs count from the
 * file's folder. Raises UsageError, which names the file and the fault.
 */
std::vector<CameraInput> readCalibration(const std::string& path);

/**
 * The cameras that a program is to read, camera 0 first: those of `calibration`, or, when it is empty, those
 * of `inputs`, of which each then shows a part of the room of its own. Raises UsageError when both or neither
 * are given.
 */
std::vector<CameraInput> cameraInputs(const std::vector<std::string>& inputs, const std::string& calibration);

}  // namespace fyn::productionrules::video
