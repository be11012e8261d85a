#pragma once

#include <cstdint>
#include <iosfwd>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "model/Geometry.h"

namespace fyn::productionrules {

/** One day: results fill the time between two rows, so a wrong time must not make a file without end. */
inline constexpr std::int64_t kLongestRecordingMs = 86'400'000;

/** One tracked head of one video frame. */
struct TrackedHead {
  std::int32_t person = 0;
  /** Camera pixels. */
  Rect box;
  /** Degrees; known only when a pose file came with the tracks. */
  std::optional<double> yaw;
  std::optional<double> pitch;
};

/** The heads of one camera by the time of their frame in milliseconds; persons of a frame in ascending order.
 */
struct CameraTracks {
  std::string name;
  /** Pixels. */
  Dimension image;
  std::map<std::int64_t, std::vector<TrackedHead>> frames;
};

/**
 * Reads the tracks of one camera: rows t_ms, person_id, left, top, right, bottom. The image size stands in a
 * comment "image WxH", else it is `fallbackImage`. Raises UsageError with file, line and fault.
 */
CameraTracks readTracks(std::istream& input, const std::string& name, std::optional<Dimension> fallbackImage);

/** Adds the poses of a file with the rows t_ms, person_id, yaw_deg, pitch_deg to the heads that they belong
 * to. */
void addPoses(std::istream& input, const std::string& name, CameraTracks& tracks);

/** "1920x1080" as a size; nothing for any other text. */
std::optional<Dimension> parseImageSize(std::string_view text);

/** The median time from one frame to the next, in milliseconds; 0 for a single frame. */
std::int64_t frameInterval(const CameraTracks& tracks);

}  // namespace fyn::productionrules
