#pragma once

#include <opencv2/core.hpp>
#include <vector>

#include "tools/video/compose/SceneDocument.h"

namespace fyn::productionrules::video {

/** A tile whatever the sizes: both rectangles are shares, from 0 to 1, of the whole picture they lie in. */
struct Placement {
  std::size_t camera = 0;
  cv::Rect2d source;
  cv::Rect2d dest;
};

/**
 * The tiles of a scene for as many cameras as there are. Throws SceneFault when a camera is not known or a
 * rectangle is empty or leaves its picture.
 */
std::vector<Placement> placementsOf(const StreamScene& scene, std::size_t cameras);

/** Whether the one can glide into the other: tile by tile the same camera. */
bool canGlide(const std::vector<Placement>& from, const std::vector<Placement>& to);

/** What lies between two arrangements that can glide; 0 is `from`, 1 is `to`. */
std::vector<Placement> between(const std::vector<Placement>& from, const std::vector<Placement>& to,
                               double progress);

/**
 * Draws an arrangement over the whole of `output`, which keeps its size; where no tile lies it is black, and
 * so is a tile whose camera has no picture. Views are cut to fractions of a pixel, so that moves do not
 * tremble; one of which a pixel would fill more than `mostEnlarged` pixels in a row is widened around its
 * middle.
 */
void draw(const std::vector<Placement>& placements, const std::vector<cv::Mat>& pictures, double mostEnlarged,
          cv::Mat& output);

}  // namespace fyn::productionrules::video
