#pragma once

#include "layouts/cycle/BaseTimerSetting.h"
#include "model/Enums.h"

namespace fyn::productionrules {

struct PrConfig;

/** The waits of the speaker engines, in milliseconds. */
class SpeakerFramingTimerSetting : public BaseTimerSetting {
 public:
  /** One layout change wait and the name under which decisions report it. */
  struct Wait {
    const char* name;
    std::uint32_t ms;
  };

  SpeakerFramingTimerSetting() = default;

  /** The reframe waits are those of group framing. */
  explicit SpeakerFramingTimerSetting(const PrConfig& config);

  /** The wait for a change between two types of layout; 0 for a type that speaker framing never shows. */
  Wait layoutChangeWait(FramingType from, FramingType to) const;

  /** Reframe wait for HEAD_OUTSIDE. */
  std::uint32_t outsideFrameTimer = 0;
  /** Reframe wait for HEAD_ON_EDGE. */
  std::uint32_t onFrameEdgeTimer = 0;
  /** Reframe wait for HEAD_OFF_CENTER. */
  std::uint32_t offCenterTimer = 0;
  /** To the group or the room. */
  std::uint32_t anyToGFLayoutChangeTimer = 0;
  std::uint32_t proxToGFLayoutChangeTimer = 0;
  /** To a speaker with neighbours. */
  std::uint32_t anyToProxLayoutChangeTimer = 0;
  std::uint32_t proxToProxLayoutChangeTimer = 0;
  std::uint32_t ssToProxLayoutChangeTimer = 0;
  /** To a speaker alone. */
  std::uint32_t proxToHeadLayoutChangeTimer = 0;
  std::uint32_t ssToHeadLayoutChangeTimer = 0;
  /** To a speaker alone from any other picture, and from one selection of speakers to another. */
  std::uint32_t frameSpeakerLayoutChangeTimer = 0;
  /** To a selection of speakers from any other picture. */
  std::uint32_t otherToSsLayoutChangeTimer = 0;
};

}  // namespace fyn::productionrules
