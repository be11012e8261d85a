#pragma once

#include "modes/GroupTrackingMode.h"
#include "modes/MultiStreamTrackingMode.h"
#include "modes/PeopleFramingMode.h"
#include "modes/SpeakerFramingMode.h"
#include "platform/Platform.h"

namespace fyn::productionrules {

/** One object of each tracking mode, which of them is active, and the role of the device, which chooses their
 * engines. */
class TrackingModes {
 public:
  /** Both must outlive it. */
  TrackingModes(const Platform& platform, BaseLayoutNotifier& notifier);

  /** Begins with group framing in the configured role. */
  void start();

  BaseTrackingMode& active() const { return *mTrackingMode; }
  FramingMode framingMode() const { return mFramingMode; }
  FynOperatingMode operatingMode() const { return mOperatingMode; }

  /** Takes the mode that "/ctl/tracking-mode" names. */
  void handleTrackingMode(const std::string& msg);

  /** Switches to the mode that the configuration, or a 360-degree secondary camera, asks for; true when it
   * did. A secondary device follows its primary only. */
  bool enforceFramingMode();

  void setFynOperatingMode(FynOperatingMode mode);

  /** Tells the other devices which mode is active. */
  void publishFramingMode();

  /** Told every decision of every mode; null for nobody. */
  void setDecisionListener(DecisionListener* listener);
  void setMaxStreams(unsigned count) { mMultiStreamTrackingMode.setMaxStreams(count); }

 private:
  BaseTrackingMode& find(FramingMode mode);
  void updateTrackingMode(FramingMode newMode);

  const Platform& mPlatform;
  SpeakerFramingMode mSpeakerFramingMode;
  PeopleFramingMode mPeopleFramingMode;
  GroupTrackingMode mGroupTrackingMode;
  MultiStreamTrackingMode mMultiStreamTrackingMode;
  BaseTrackingMode* mTrackingMode = &mGroupTrackingMode;
  /** As asked for: one that has no object of its own is shown by the group mode. */
  FramingMode mFramingMode = FramingMode::GroupFraming;
  FynOperatingMode mOperatingMode = FynOperatingMode::Standalone;
};

}  // namespace fyn::productionrules
