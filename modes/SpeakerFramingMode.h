#pragma once

#include "modes/BaseTrackingMode.h"

namespace fyn::productionrules {

/** The picture follows who speaks. */
class SpeakerFramingMode final : public BaseTrackingMode {
 public:
  /** Takes `layout` as the engine, or makes the standalone one when it is empty. */
  explicit SpeakerFramingMode(BaseLayoutNotifier& notifier, std::shared_ptr<BaseLayout> layout = nullptr);

  void checkAndSetSystemTimers() override;
  std::shared_ptr<BaseLayout> makeLayout(FynOperatingMode mode) const override;
  std::string getName() const override;
  FramingMode getTrackingMode() override { return FramingMode::SpeakerFraming; }
};

}  // namespace fyn::productionrules
