#pragma once

#include <cstdint>
#include <nlohmann/json_fwd.hpp>
#include <set>

#include "model/Enums.h"
#include "model/Geometry.h"
#include "model/Timer.h"

namespace fyn::productionrules {

/** One view cut out of one camera image, placed in the output picture, with the heads that it shows. */
struct Frame {
  std::int32_t frameIndex = 0;
  FramingType frameType = FramingType::NONE;
  FrameLayout frameLayout = kFrameLayoutNone;
  /** Where the frame is drawn, in pixels of the output picture (kOutputSize). */
  Rect dest;
  /** The part of the camera image that the frame shows, in camera pixels. */
  Rect source;
  /** The size of the camera image that `source` refers to; 0 x 0 when the camera configuration knows it. */
  Dimension srcRef;
  /** The camera that the frame is cut from. */
  std::uint32_t fynCamId = 0;
  /** Ids of the heads in the frame, as their camera numbers them. */
  std::set<std::int64_t> heads;
  /** Ids of the persons in the frame, the same in all cameras. */
  std::set<std::int64_t> fynHeads;

  /** Holds the class of a subject that is off its position while its wait runs, else CENTER. */
  HeadPosition headPosition = HeadPosition::HEAD_ON_EDGE;
  Timer headPositionTimer;
  /** Runs while another camera shows the person better. */
  Timer feedPriorityTimer;
  /** The box of heads that the view was made for, in camera pixels, before group buffers and zoom limit. */
  Rect detectionBoundary;

  /** Reads a frame of a secondary-layout document, whose "dest" refers to a picture of the given size in
   * pixels. Raises the JSON library's errors; what was read until then stays. */
  void from_json(const nlohmann::json& document, int destWidth, int destHeight);
};

}  // namespace fyn::productionrules
