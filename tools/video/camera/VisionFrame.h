#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "model/Geometry.h"
#include "tools/video/camera/Programme.h"

namespace fyn::productionrules::video {

/** A head of a vision result, for the overlay. */
struct ShownHead {
  std::int32_t camera = 0;
  std::int64_t person = 0;
  bool speaking = false;
  /** In the camera's frame of reference, 1280 x 720. */
  Rect box;
};

/** What a vision result tells about its frame. */
struct VisionFrame {
  FrameTime time;
  std::vector<ShownHead> heads;
};

/** Reads a vision result; throws std::invalid_argument with one line when it is none. */
VisionFrame parseVisionFrame(const std::string& text);

}  // namespace fyn::productionrules::video
