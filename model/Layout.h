#pragma once

#include <cstdint>
#include <memory>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

#include "model/Frame.h"

namespace fyn::productionrules {

/** What one output stream shows: a list of frames, and the transition into it. */
struct Layout {
  FramingType layoutType = FramingType::NONE;
  std::int32_t headFrameCount = 0;
  std::int32_t proximityFrameCount = 0;
  std::int32_t largeProximityFrameCount = 0;
  std::vector<Frame> frames;
  /** The wait of a pending layout. */
  Timer layoutTimer;
  /** Name of the transition: "cut", "dissolve" or "ease". */
  std::string animation;
  /** Duration of the transition, in milliseconds. */
  std::int32_t duration = 0;
  /** The number of persons the layout was made for. */
  std::int32_t faceCount = 0;
  std::int32_t streamId = 0;
  /** False for the stream of a virtual camera. */
  bool isLogicalStream = true;
  /** The vision frame that the layout was made from. */
  std::int64_t frameNumber = 0;
  /** The vision frame that started the latest reframe wait. */
  std::int64_t reframeFrameNumber = 0;
  /** The person who speaks; -1 when there is none. */
  std::int64_t activeSpeaker = -1;
  /** The type of the layout that is pending behind this one; NONE when there is none. */
  FramingType nextLayoutType = FramingType::NONE;
  /** By which rule of its own an engine made it, in words; "" for none. Lives as long as the process. */
  const char* reason = "";

  /** Reads a layout of a secondary-layout document; parsed frames are appended. Raises the JSON library's
   * errors; what was read until then stays. */
  void from_json(const nlohmann::json& document);
};

/** Sets the transition of a layout; an empty pointer is ignored. */
void setLayoutAnimation(const std::shared_ptr<Layout>& layout, const std::string& animation, int duration);

}  // namespace fyn::productionrules
