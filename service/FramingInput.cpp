#include "service/FramingInput.h"

#include <ctime>
#include <nlohmann/json.hpp>

#include "config/PrConfig.h"
#include "platform/ServiceState.h"
#include "platform/Ticks.h"
#include "platform/VisionSettings.h"

namespace fyn::productionrules {

namespace {

constexpr const char* kTag = "ProductionRulesIPCService";
constexpr const char* kDumpName = "PRB_Layouts";

void logParsingError(const nlohmann::json::exception& fault, const std::string& msg) {
  PRB_LOGE(kTag, "parsing error: %s, input=%s", fault.what(), msg.c_str());
}

}  // namespace

void FramingInput::handleVisionResult(const std::string& msg) {
  try {
    processMlData(getMLData(msg));
  } catch (const nlohmann::json::exception& fault) {
    logParsingError(fault, msg);
  }
}

void FramingInput::handleSecondaryLayout(const std::string& msg) {
  PRB_LOGD(kTag, "%s: secondary layout: %s", "process", msg.c_str());
  try {
    const std::vector<std::shared_ptr<Layout>> layouts = getSecondaryLayoutData(msg);
    if (!layouts.empty() && layouts.front() != nullptr) {
      processSecondaryLayout(layouts);
    }
  } catch (const nlohmann::json::exception& fault) {
    logParsingError(fault, msg);
  }
}

std::vector<std::shared_ptr<Layout>> FramingInput::getSecondaryLayoutData(const std::string& msg) const {
  std::vector<std::shared_ptr<Layout>> layouts;
  const nlohmann::json document = nlohmann::json::parse(msg);
  if (const auto streams = document.find("streams"); streams != document.end()) {
    for (const nlohmann::json& stream : *streams) {
      layouts.push_back(std::make_shared<Layout>());
      layouts.back()->from_json(stream);
    }
  }
  return layouts;
}

void FramingInput::processSecondaryLayout(const std::vector<std::shared_ptr<Layout>>& layouts) {
  mModes.active().setSecondaryLayout(layouts);
}

void FramingInput::dumpDebug() {
  mDebug = true;
  if (PrConfig::get().fynDebugFileEnabled && !mFileWriter) {
    mFileWriter.emplace(kDumpName, mPlatform.openDump);
  }
}

void FramingInput::processMlData(const std::shared_ptr<MLData>& mlData) {
  mPlatform.health->countResult();
  const PrConfig& config = PrConfig::get();
  if (config.fynFrameTrackingEnabled) {
    mFrameTracker.trackMissedFrames(mlData->frameNumber, kTag, config.fynFrameTrackingTimer);
  }
  const bool modeSwitched = mModes.enforceFramingMode();
  BaseTrackingMode& mode = mModes.active();
  const bool changed = mode.process(mlData);
  if (config.fynDebugFileEnabled && mFileWriter) {
    mFileWriter->write(mode.getDebugDataInJson());
  }
  if (!changed && !mode.isLayoutPending()) {
    sendPeriodically();
    return;
  }
  if (modeSwitched) {
    mode.setLayoutAnimationToCut();
  }
  PRB_LOGI(kTag, "%s sending Layout, mDebug: %d ", "processMlData", static_cast<int>(mDebug));
  mode.sendLayout(mDebug);
}

// Nothing changed: a debug send now and then, while somebody watches.
void FramingInput::sendPeriodically() {
  const PrConfig& config = PrConfig::get();
  if (!mRecording && !config.fynDebugEnabled) {
    return;
  }
  const std::int64_t now = getWallTs64() / 1000;
  std::int64_t& lastSend = ServiceState::current().times.lastPeriodicSend;
  if (std::difftime(static_cast<std::time_t>(now), static_cast<std::time_t>(lastSend)) <
      config.fynDebugTimer) {
    return;
  }
  lastSend = now;
  mModes.active().sendLayout(true);
}

}  // namespace fyn::productionrules
