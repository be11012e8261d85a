#include "service/JsonLayoutNotifier.h"

#include "config/PrConfig.h"
#include "model/FynCamerasConfig.h"
#include "platform/VisionSettings.h"

namespace fyn::productionrules {

namespace {
constexpr const char* kTag = "JsonLayoutNotifier";
}

void JsonLayoutNotifier::sendLayout(const Layout& layout, const FramingMode& mode, bool debug) {
  if (mJsonCallbackFunP) {
    sendLayouts(std::vector<Layout>(1, layout), mode, debug);
  }
}

void JsonLayoutNotifier::sendLayouts(const std::vector<Layout>& layouts, const FramingMode& mode,
                                     bool debug) {
  // The configured mode and not the service's current one: deliberately so.
  const bool isPrimary = PrConfig::get().fynOperatingMode == FynOperatingMode::Primary;
  if (mJsonCallbackFunP) {
    if (!debug) {
      ++mSceneCounter;
    }
    const std::string document =
        isPrimary ? mBuilder.generateMultiStreamLayoutPrimary(layouts, mSceneCounter, mode,
                                                              FynCamerasConfig::get().fynCamId, debug)
                  : mBuilder.generateMultiStreamLayout(layouts, mSceneCounter, mode, debug);
    PRB_LOGD(kTag, "sendLayouts: %s", document.c_str());
    mJsonCallbackFunP(document, debug);
  } else {
    PRB_LOGE(kTag, "sendLayouts: mJsonCallbackFunP is nullptr");
  }
  sendSecondaryLayouts(layouts, isPrimary, debug);
}

void JsonLayoutNotifier::sendSecondaryLayouts(const std::vector<Layout>& layouts, bool isPrimary,
                                              bool debug) {
  if (!mJsonSecondaryCallbackFunP) {
    if (isPrimary) {
      PRB_LOGE(kTag, "sendLayouts: mJsonSecondaryCallbackFunP is nullptr");
    }
    return;
  }
  const FynCamerasConfig& cameras = FynCamerasConfig::get();
  for (const auto& [id, camera] : cameras.fynCamInfoMap) {
    if (id != cameras.fynCamId) {
      mJsonSecondaryCallbackFunP(
          mBuilder.generateSecondaryLayout(layouts, mSceneCounter, id, camera.ids.uid, debug), id);
    }
  }
}

void JsonLayoutNotifier::sendDebugTimerInfo(const std::vector<std::shared_ptr<Layout>>& finalLayouts,
                                            const std::vector<std::shared_ptr<Layout>>& nextLayouts) const {
  if (mDebugTimerCallbackFuncP) {
    mDebugTimerCallbackFuncP(mBuilder.generateDebugTimerInfo(finalLayouts, nextLayouts));
  }
}

void JsonLayoutNotifier::sendPeopleCount(unsigned count, unsigned minHeadHeight) const {
  if (!mPeopleCountCallbackFuncP) {
    return;
  }
  const std::string document = mBuilder.generatePeopleCountJson(count, minHeadHeight);
  PRB_LOGI(kTag, "sendPeopleCount: %s", document.c_str());
  mPeopleCountCallbackFuncP(document);
}

}  // namespace fyn::productionrules
