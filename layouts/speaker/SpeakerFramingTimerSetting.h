#pragma once

#include "layouts/cycle/SingleHeadTimerSetting.h"

namespace fyn::productionrules {

struct PrConfig;

/** The waits of the speaker engines, in milliseconds. */
class SpeakerFramingTimerSetting : public SingleHeadTimerSetting {
 public:
  SpeakerFramingTimerSetting() = default;

  /** The reframe waits are those of group framing. */
  explicit SpeakerFramingTimerSetting(const PrConfig& config);

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

 protected:
  const WaitSources& sources() const override;
};

}  // namespace fyn::productionrules
