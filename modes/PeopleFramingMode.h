#pragma once

#include "modes/BaseTrackingMode.h"

namespace fyn::productionrules {

/** A tile for everyone. */
class PeopleFramingMode final : public BaseTrackingMode {
 public:
  /** Takes `layout` as the engine, or makes the standalone one when it is empty. */
  explicit PeopleFramingMode(BaseLayoutNotifier& notifier, std::shared_ptr<BaseLayout> layout = nullptr);

  void checkAndSetSystemTimers() override;
  std::shared_ptr<BaseLayout> makeLayout(FynOperatingMode mode) const override;
  std::string getName() const override;
  FramingMode getTrackingMode() override { return FramingMode::PeopleFraming; }
};

}  // namespace fyn::productionrules
