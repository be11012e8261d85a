#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "layouts/cycle/BaseLayout.h"
#include "modes/BaseLayoutNotifier.h"

namespace fyn::productionrules {

/**
 * One framing strategy as the service drives it. It owns the layout engine for the device's operating mode,
 * feeds it every vision result and publishes through the notifier what came of it. Used from the dispatch
 * thread only.
 */
class BaseTrackingMode {
 public:
  explicit BaseTrackingMode(BaseLayoutNotifier& notifier);
  BaseTrackingMode(const BaseTrackingMode&) = delete;
  BaseTrackingMode& operator=(const BaseTrackingMode&) = delete;

  /** Gives the engine the waits that are in force now. */
  virtual void checkAndSetSystemTimers() = 0;

  virtual ~BaseTrackingMode() = default;

  /** Feeds a vision result to the engine; true when a layout must be sent. */
  virtual bool process(const std::shared_ptr<MLData>& mlData);

  /** The engine's state for the debug dump; empty without an engine. */
  virtual std::string getDebugDataInJson();

  virtual void sendLayout(bool debug);
  virtual void sendDebugTimerInfo(const std::shared_ptr<BaseLayout>& layout);
  virtual void sendPeopleCountInfo();
  virtual std::shared_ptr<BaseLayout> getFramingLayout();

  /** Makes the transition into the layout on screen a cut. */
  virtual void setLayoutAnimationToCut();

  /** Applies the first of the layouts that a primary device sent; the others are ignored. */
  virtual void setSecondaryLayout(const std::vector<std::shared_ptr<Layout>>& layouts);

  virtual void resetLayouts();

  /** The `source` of every frame on screen, in camera pixels. */
  virtual std::vector<Rect> getSceneRects() const;

  /** A new engine for the operating mode; the current one where the mode has no engine of its own. */
  virtual std::shared_ptr<BaseLayout> makeLayout(FynOperatingMode mode) const;

  /** For hosts. */
  virtual std::string getName() const;
  virtual FramingMode getTrackingMode() = 0;

  /** Takes `layout` as the engine, or makes one for `mode` when it is empty. */
  void updateTrackingModeLayout(FynOperatingMode mode, std::shared_ptr<BaseLayout> layout);

  /** Whether a layout of a primary device waits to be sent. */
  bool isLayoutPending() const { return mLayoutPending; }

  /** Told every decision of this mode's engines; null for nobody. */
  void setDecisionListener(DecisionListener* listener);

 protected:
  void setEngine(std::shared_ptr<BaseLayout> layout);

  std::shared_ptr<BaseLayout> mLayout;
  BaseLayoutNotifier& mNotifier;
  /** Ticks of the latest refresh of the waits. */
  std::uint32_t mLastTimerCheck = 0;
  /** Milliseconds between refreshes of the waits; 0 for never. */
  std::uint32_t mTimerCheckPeriod;
  bool mLayoutPending = false;
  FynOperatingMode mOperatingMode = FynOperatingMode::Standalone;

 private:
  DecisionListener* mDecisionListener = nullptr;
};

/** The engine of a mode for each role of the device; `current` for any other value. */
template <typename Standalone, typename Primary, typename Secondary>
std::shared_ptr<BaseLayout> makeLayoutForRole(FynOperatingMode mode,
                                              const std::shared_ptr<BaseLayout>& current) {
  switch (mode) {
    case FynOperatingMode::Standalone:
      return std::make_shared<Standalone>();
    case FynOperatingMode::Primary:
      return std::make_shared<Primary>();
    case FynOperatingMode::Secondary:
      return std::make_shared<Secondary>();
  }
  return current;
}

}  // namespace fyn::productionrules
