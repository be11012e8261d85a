#pragma once

#include "modes/BaseTrackingMode.h"

namespace fyn::productionrules {

/** Everybody in one picture. */
class GroupTrackingMode final : public BaseTrackingMode {
 public:
  /** Takes `layout` as the engine, or makes the standalone one when it is empty. */
  explicit GroupTrackingMode(BaseLayoutNotifier& notifier, std::shared_ptr<BaseLayout> layout = nullptr);

  void checkAndSetSystemTimers() override;
  std::shared_ptr<BaseLayout> makeLayout(FynOperatingMode mode) const override;
  std::string getName() const override;
  FramingMode getTrackingMode() override { return FramingMode::GroupFraming; }
};

}  // namespace fyn::productionrules
