#pragma once

#include "modes/BaseTrackingMode.h"

namespace fyn::productionrules {

/** Several output streams at once. */
class MultiStreamTrackingMode final : public BaseTrackingMode {
 public:
  /** Takes `layout` as the engine, or makes the standalone one when it is empty. */
  explicit MultiStreamTrackingMode(BaseLayoutNotifier& notifier,
                                   std::shared_ptr<BaseLayout> layout = nullptr);

  void checkAndSetSystemTimers() override;
  std::shared_ptr<BaseLayout> makeLayout(FynOperatingMode mode) const override;
  FramingMode getTrackingMode() override { return FramingMode::MultiStream; }

  /** Sends the layouts of all streams in one document. */
  void sendLayout(bool debug) override;
  void setLayoutAnimationToCut() override;

  /** The number of streams beside the one that shows everybody. */
  void setMaxStreams(unsigned count);
};

}  // namespace fyn::productionrules
