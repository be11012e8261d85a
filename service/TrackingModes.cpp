#include "service/TrackingModes.h"

#include <initializer_list>

#include "config/PrConfig.h"
#include "model/FynCamerasConfig.h"
#include "platform/SystemProperties.h"
#include "platform/Topics.h"
#include "platform/VisionSettings.h"

namespace fyn::productionrules {

namespace {

constexpr const char* kTag = "ProductionRulesIPCService";

// The mode enters log texts as a number.
template <typename Mode>
int number(Mode mode) {
  return static_cast<int>(mode);
}

}  // namespace

TrackingModes::TrackingModes(const Platform& platform, BaseLayoutNotifier& notifier)
    : mPlatform(platform),
      mSpeakerFramingMode(notifier),
      mPeopleFramingMode(notifier),
      mGroupTrackingMode(notifier),
      mMultiStreamTrackingMode(notifier) {}

void TrackingModes::start() {
  mOperatingMode = getFynOperatingMode();
  PRB_LOGI(kTag, "%s PRB fynOperatingMode: %d", "ProductionRuleIPCService", number(mOperatingMode));
  if (mOperatingMode == FynOperatingMode::Primary) {
    FynCamerasConfig::getMutable().fynCamId = 0;
  }
  mTrackingMode->updateTrackingModeLayout(mOperatingMode, nullptr);
  mPlatform.health->setMode(framingModeToString(mFramingMode));
}

void TrackingModes::handleTrackingMode(const std::string& msg) {
  PRB_LOGI(kTag, "%s: TRACKING_MODE_CTL_MSG: %s", "process", msg.c_str());
  const FramingMode mode = stringToFramingMode(msg);
  if (mode != mFramingMode) {
    updateTrackingMode(mode);
  }
}

bool TrackingModes::enforceFramingMode() {
  if (mOperatingMode == FynOperatingMode::Secondary) {
    return false;
  }
  const PrConfig& config = PrConfig::get();
  const auto configured = static_cast<FramingMode>(config.framingMode);
  const bool isForced = config.fpBeta1Enabled && mOperatingMode == FynOperatingMode::Primary &&
                        FynCamerasConfig::get().isSecondary360Camera();
  const FramingMode wanted = isForced ? FramingMode::PeopleFraming : configured;
  if (wanted == mFramingMode) {
    return false;
  }
  if (isForced) {
    PRB_LOGI(kTag, "FORCE Trackingmode to people framing mode on secondary 360 camera");
  } else {
    PRB_LOGI(kTag,
             "fynoperatingmdoe : %d Layout animation is cut because we are switching view modes %d -> %d",
             number(mOperatingMode), number(mFramingMode), number(wanted));
  }
  updateTrackingMode(wanted);
  publishFramingMode();
  if (wanted != configured) {
    property_set("vendor.talkertracking.flag", "4");
  }
  return true;
}

BaseTrackingMode& TrackingModes::find(FramingMode mode) {
  switch (mode) {
    case FramingMode::SpeakerFraming:
      return mSpeakerFramingMode;
    case FramingMode::PeopleFraming:
      return mPeopleFramingMode;
    case FramingMode::MultiStream:
      return mMultiStreamTrackingMode;
    default:
      return mGroupTrackingMode;
  }
}

void TrackingModes::updateTrackingMode(FramingMode newMode) {
  PRB_LOGI(kTag, "%s  updating to newMode: %s -> %s", "updateTrackingMode",
           framingModeToString(mFramingMode).c_str(), framingModeToString(newMode).c_str());
  mTrackingMode = &find(newMode);
  mFramingMode = newMode;
  mPlatform.health->setMode(framingModeToString(newMode));
  mTrackingMode->resetLayouts();
  mTrackingMode->updateTrackingModeLayout(mOperatingMode, nullptr);
}

void TrackingModes::setFynOperatingMode(FynOperatingMode mode) {
  if (mode == mOperatingMode) {
    return;
  }
  mOperatingMode = mode;
  property_set("vendor.fynpilot.fynOperatingMode", std::to_string(number(mode)).c_str());
  PRB_LOGI(kTag, "%s: Setting fynOperatingMode: %d", "setFynOperatingMode", number(mode));
  if (mode == FynOperatingMode::Primary) {
    FynCamerasConfig::getMutable().fynCamId = 0;
  }
  updateTrackingMode(mFramingMode);
  mPlatform.bus->publish(std::string(topics::kControlPassThrough),
                         mode == FynOperatingMode::Primary ? "true" : "false");
}

void TrackingModes::publishFramingMode() {
  mPlatform.bus->publish(std::string(topics::kTrackingMode), framingModeToString(mFramingMode));
}

void TrackingModes::setDecisionListener(DecisionListener* listener) {
  for (BaseTrackingMode* mode : std::initializer_list<BaseTrackingMode*>{
           &mSpeakerFramingMode, &mPeopleFramingMode, &mGroupTrackingMode, &mMultiStreamTrackingMode}) {
    mode->setDecisionListener(listener);
  }
}

}  // namespace fyn::productionrules
