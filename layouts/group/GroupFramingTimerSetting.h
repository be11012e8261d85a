#pragma once

#include "layouts/cycle/SingleHeadTimerSetting.h"

namespace fyn::productionrules {

struct PrConfig;

/** The waits of the group engines, in milliseconds. */
class GroupFramingTimerSetting : public SingleHeadTimerSetting {
 public:
  GroupFramingTimerSetting() = default;

  /** Takes every wait that group framing has a key for; the last two stay 0. */
  explicit GroupFramingTimerSetting(const PrConfig& config);

  std::uint32_t proxToHeadLayoutChangeTimer = 0;
  std::uint32_t proxToProxLayoutChangeTimer = 0;
  std::uint32_t proxToGFLayoutChangeTimer = 0;
  std::uint32_t headToOtherLayoutChangeTimer = 0;
  std::uint32_t headCountLayoutChangeTimer = 0;

 protected:
  const WaitSources& sources() const override;
};

}  // namespace fyn::productionrules
