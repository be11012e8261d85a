#pragma once

#include "layouts/cycle/SingleHeadTimerSetting.h"

namespace fyn::productionrules {

struct PrConfig;

/** The waits of the people engines, in milliseconds. */
class PeopleFrameTimerSetting : public SingleHeadTimerSetting {
 public:
  PeopleFrameTimerSetting() = default;
  explicit PeopleFrameTimerSetting(const PrConfig& config);

  void printCurrentTimerValues(const std::string& tag) const override;

  std::uint32_t proxToHeadLayoutChangeTimer = 0;
  std::uint32_t proxToProxLayoutChangeTimer = 0;
  std::uint32_t proxToGFLayoutChangeTimer = 0;
  std::uint32_t headToOtherLayoutChangeTimer = 0;
  std::uint32_t headCountLayoutChangeTimer = 0;
  std::uint32_t headPosLayoutChangeTimer = 0;
  /** Taken off a layout change wait when people have left. */
  std::uint32_t peopleLeftTimerReduction = 0;
  std::uint32_t roomToHeadLayoutChangeTimer = 0;
  /** Hold before a person is shown by a better camera. */
  std::uint32_t feedPriorityChangedTimer = 0;

 protected:
  const WaitSources& sources() const override;
};

}  // namespace fyn::productionrules
