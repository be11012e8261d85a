#pragma once

#include <iosfwd>
#include <map>
#include <string>

#include "tools/video/vision/PersonDetector.h"

namespace fyn::productionrules::video {

/**
 * Sees what a script says, for tests and demonstrations. The script is JSON Lines:
 *
 *     {"frame": 1, "camera": 0, "heads": [{"left": 600, "top": 200, "right": 680, "bottom": 300,
 *      "score": 0.9, "speaking": true, "yaw": 5, "pitch": 0}]}
 *
 * in the camera's frame of reference; "camera" and the second line's keys may be left out. A line stands
 * until the next one of its camera.
 */
class ScriptedDetector final : public PersonDetector {
 public:
  /** Raises UsageError "NAME:LINE: FAULT" for a line that cannot be used. */
  ScriptedDetector(std::istream& script, const std::string& name);

  std::vector<Detection> detect(const cv::Mat& picture, std::size_t camera, std::int64_t frame) override;

 private:
  /** Camera -> frame -> heads from there on. */
  std::map<std::size_t, std::map<std::int64_t, std::vector<Detection>>> mScript;
};

}  // namespace fyn::productionrules::video
