#include "service/ProductionRuleIPCService.h"

#include <algorithm>
#include <array>
#include <ctime>
#include <nlohmann/json.hpp>

#include "config/PrConfig.h"
#include "model/FynCamerasConfig.h"
#include "platform/ServiceState.h"
#include "platform/SystemProperties.h"
#include "platform/Ticks.h"
#include "platform/Topics.h"
#include "platform/VisionSettings.h"
#include "service/TopicText.h"

namespace fyn::productionrules {

using com::quil::pubsub::appendSubtopic;

namespace {

constexpr const char* kTag = "ProductionRulesIPCService";
constexpr const char* kDumpName = "PRB_Layouts";
constexpr std::uint32_t kPeriodMs = 4000;

// The mode enters log texts as a number.
int number(FramingMode mode) {
  return static_cast<int>(mode);
}
int number(FynOperatingMode mode) {
  return static_cast<int>(mode);
}

}  // namespace

// ---- Start and end ----

ProductionRuleIPCService::ProductionRuleIPCService(const Platform& platform, const std::string& name)
    : BaseIPCService(platform, kPeriodMs, name),
      mProvider(std::make_shared<QuilProviderConnection>(platform)),
      mDecisionPublisher([this](const std::string& document) {
        pubSubClient().publish(std::string(topics::kDecisions), document);
      }),
      mSpeakerFramingMode(mNotifier),
      mPeopleFramingMode(mNotifier),
      mGroupTrackingMode(mNotifier),
      mMultiStreamTrackingMode(mNotifier),
      mTrackingMode(&mGroupTrackingMode) {
  PRB_LOGI(kTag, "ProductionRuleIPCService::ctor()");
  mOperatingMode = getFynOperatingMode();
  PRB_LOGI(kTag, "%s PRB fynOperatingMode: %d", "ProductionRuleIPCService", number(mOperatingMode));
  if (mOperatingMode == FynOperatingMode::Primary) {
    FynCamerasConfig::getMutable().fynCamId = 0;
  }
  mTrackingMode->updateTrackingModeLayout(mOperatingMode, nullptr);
  platform.health->setMode(framingModeToString(mFramingMode));
  if (PrConfig::get().fynDebugFileEnabled) {
    openDumpWriter();
    mDebug = true;
  }
  mProvider->listenToAppearances();
  connectToQuilProvider();
  installCallbacks();
  listenToDecisions();
}

ProductionRuleIPCService::~ProductionRuleIPCService() {
  closeBus();
  mProvider->close();
}

void ProductionRuleIPCService::init() {
  setName("prServ");
  com::quil::pubsub::IPubSubClient& bus = pubSubClient();
  const auto subscribe = [&](std::string_view topic) { bus.subscribe(std::string(topic), *this); };
  for (const std::string_view topic : {topics::kVisionResult, topics::kControl, topics::kRecordStart,
                                       topics::kRecordStop, topics::kCamera, topics::kCameras}) {
    subscribe(topic);
  }
  subscribe(appendRemoteToTopic(topics::kCameraMoved));
  subscribe(topics::kDebugLog);
  for (const std::string_view topic : topics::kAdvertised) {
    bus.advertise(std::string(topic));
  }
  subscribe(topics::kCameraParametersHead);
}

void ProductionRuleIPCService::installCallbacks() {
  mNotifier.setJsonCallback([this](const std::string& json, bool debug) {
    if (debug) {
      PRB_LOGD(kTag, "%s: Send debug layout", "operator()");
      pubSubClient().publish(std::string(topics::kDebugScene), json);
      return;
    }
    countPictures();
    pubSubClient().publish(std::string(topics::kScene), json);
    mProvider->sendScene(json);
  });
  installSecondaryCallback();
  mNotifier.setDebugTimerCallbackFuncP(
      [this](const std::string& json) { pubSubClient().publish(std::string(topics::kTimerDebug), json); });
  mNotifier.setPeopleCountCallbackFuncP(
      [this](const std::string& json) { pubSubClient().publish(std::string(topics::kPeopleCount), json); });
}

void ProductionRuleIPCService::installSecondaryCallback() {
  mNotifier.setJsonSecondaryCallback([this](const std::string& json, int camId) {
    if (mOperatingMode != FynOperatingMode::Primary) {
      return;
    }
    PRB_LOGI(kTag, "%s: Send secondary layout: cam=%d - json=%s", "operator()", camId, json.c_str());
    pubSubClient().publish(appendSubtopic(topics::kSecondaryScene, std::to_string(camId)), json);
  });
}

void ProductionRuleIPCService::openDumpWriter() {
  mFileWriter = std::make_unique<FynFileWriter>(kDumpName, platform().openDump);
}

bool ProductionRuleIPCService::connectToQuilProvider() {
  return mProvider->connectToQuilProvider();
}

void ProductionRuleIPCService::rescheduleQuilProviderConnection() {
  mProvider->rescheduleQuilProviderConnection();
}

void ProductionRuleIPCService::periodicCheck() {}

void ProductionRuleIPCService::setDecisionListener(DecisionListener* listener) {
  mDecisionPublisher.setNext(listener);
  listenToDecisions();
}

// An engine that nobody listens to makes no decision documents at all.
void ProductionRuleIPCService::listenToDecisions() {
  DecisionListener* const listener =
      PrConfig::get().fynDebugDecisionsEnabled ? &mDecisionPublisher : mDecisionPublisher.next();
  for (BaseTrackingMode* mode : std::initializer_list<BaseTrackingMode*>{
           &mSpeakerFramingMode, &mPeopleFramingMode, &mGroupTrackingMode, &mMultiStreamTrackingMode}) {
    mode->setDecisionListener(listener);
  }
}

// ---- Dispatch ----

/** One row of the dispatch table: which messages it takes and what handles them. */
struct ProductionRuleIPCService::Route {
  bool (*matches)(const std::string& topic, const std::string& msg);
  void (ProductionRuleIPCService::*handle)(const std::string& topic, const std::string& msg);
};

// The first row that matches handles the message: the order of the rows is the rule.
const ProductionRuleIPCService::Route* ProductionRuleIPCService::findRoute(const std::string& topic,
                                                                           const std::string& msg) {
  using Service = ProductionRuleIPCService;
  using Text = const std::string&;
  static const std::array<Route, 15> kRoutes{{
      {[](Text t, Text) { return t == topics::kVisionResult; }, &Service::handleVisionResult},
      {[](Text t, Text) { return t == topics::kCameraParameters; }, &Service::handleCameraParametersMsg},
      {[](Text t, Text m) { return t == topics::kControl && m == control::kConfigChange; },
       &Service::reloadConfiguration},
      {[](Text t, Text) {
         constexpr std::size_t length = topics::kCameraParameters.size();
         return t.size() > length && t.compare(0, length, topics::kCameraParameters) == 0 && t[length] == '/';
       },
       &Service::handleCameraParametersMsg},
      {[](Text t, Text m) { return t == topics::kControl && m == control::kResetLayouts; },
       &Service::handleResetLayouts},
      {[](Text t, Text m) { return t == topics::kControl && m == control::kDumpDebug; },
       &Service::handleDumpDebug},
      {[](Text t, Text) { return t == topics::kRecordStart; }, &Service::startRecording},
      {[](Text t, Text) { return t == topics::kRecordStop; }, &Service::stopRecording},
      {[](Text t, Text) { return t == topics::kTrackingMode; }, &Service::handleTrackingMode},
      {[](Text t, Text) {
         return t ==
                appendSubtopic(topics::kSecondaryScene, std::to_string(FynCamerasConfig::get().fynCamId));
       },
       &Service::handleSecondaryLayout},
      {[](Text t, Text) { return t == topics::kCamera; }, &Service::handleCamera},
      {[](Text t, Text) { return t == topics::kCameras; }, &Service::handleCameras},
      {[](Text t, Text) { return t == topics::kDebugLogCameras; }, &Service::logCameras},
      {[](Text t, Text) { return t == topics::kDebugLogCameraId; }, &Service::logCameraId},
      {[](Text t, Text) { return t == appendRemoteToTopic(topics::kCameraMoved); },
       &Service::handleRemoteFynCameraMoved},
  }};
  for (const Route& route : kRoutes) {
    if (route.matches(topic, msg)) {
      return &route;
    }
  }
  return nullptr;
}

void ProductionRuleIPCService::process(const std::string& topic, const std::string& msg) {
  BaseIPCService::process(topic, msg);
  const Route* const route = findRoute(topic, msg);
  if (route == nullptr) {
    PRB_LOGE(kTag, "ProductionRuleIPCService::%s unknown topic: %s", "process", topic.c_str());
    return;
  }
  (this->*route->handle)(topic, msg);
}

// ---- Vision results ----

void ProductionRuleIPCService::handleVisionResult(const std::string& /*topic*/, const std::string& msg) {
  try {
    processMlData(getMLData(msg));
  } catch (const nlohmann::json::exception& fault) {
    PRB_LOGE(kTag, "parsing error: %s, input=%s", fault.what(), msg.c_str());
  }
}

std::shared_ptr<MLData> ProductionRuleIPCService::getMLData(const std::string& msg) {
  return mVisionResults->read(msg);
}

void ProductionRuleIPCService::processMlData(const std::shared_ptr<MLData>& mlData) {
  platform().health->countResult();
  if (PrConfig::get().fynFrameTrackingEnabled) {
    mFrameTracker.trackMissedFrames(mlData->frameNumber, kTag, PrConfig::get().fynFrameTrackingTimer);
  }
  const bool modeSwitched = mOperatingMode != FynOperatingMode::Secondary && enforceFramingMode();
  const bool changed = mTrackingMode->process(mlData);
  if (PrConfig::get().fynDebugFileEnabled && mFileWriter != nullptr) {
    mFileWriter->write(mTrackingMode->getDebugDataInJson());
  }
  if (!changed && !mTrackingMode->isLayoutPending()) {
    sendPeriodically();
    return;
  }
  if (modeSwitched) {
    mTrackingMode->setLayoutAnimationToCut();
  }
  PRB_LOGI(kTag, "%s sending Layout, mDebug: %d ", "processMlData", static_cast<int>(mDebug));
  mTrackingMode->sendLayout(mDebug);
}

// Switches to the mode that the configuration, or a 360-degree secondary camera, asks for; true when it did.
bool ProductionRuleIPCService::enforceFramingMode() {
  const PrConfig& config = PrConfig::get();
  const auto configured = static_cast<FramingMode>(config.framingMode);
  const auto switchTo = [this](FramingMode mode) {
    updateTrackingMode(mode);
    pubSubClient().publish(std::string(topics::kTrackingMode), framingModeToString(mode));
  };
  const bool peopleFramingForced = config.fpBeta1Enabled && mOperatingMode == FynOperatingMode::Primary &&
                                   FynCamerasConfig::get().isSecondary360Camera();
  if (!peopleFramingForced) {
    if (configured == mFramingMode) {
      return false;
    }
    PRB_LOGI(kTag,
             "fynoperatingmdoe : %d Layout animation is cut because we are switching view modes %d -> %d",
             number(mOperatingMode), number(mFramingMode), number(configured));
    switchTo(configured);
    return true;
  }
  if (mFramingMode == FramingMode::PeopleFraming) {
    return false;
  }
  PRB_LOGI(kTag, "FORCE Trackingmode to people framing mode on secondary 360 camera");
  switchTo(FramingMode::PeopleFraming);
  if (configured != FramingMode::PeopleFraming) {
    property_set("vendor.talkertracking.flag", "4");
  }
  return true;
}

// Nothing changed: a debug send now and then, while somebody watches.
void ProductionRuleIPCService::sendPeriodically() {
  if (!mRecording && !PrConfig::get().fynDebugEnabled) {
    return;
  }
  const std::int64_t now = getWallTs64() / 1000;
  std::int64_t& lastSend = ServiceState::current().times.lastPeriodicSend;
  if (std::difftime(static_cast<std::time_t>(now), static_cast<std::time_t>(lastSend)) <
      PrConfig::get().fynDebugTimer) {
    return;
  }
  lastSend = now;
  mTrackingMode->sendLayout(true);
}

void ProductionRuleIPCService::countPictures() {
  const std::shared_ptr<BaseLayout> engine = mTrackingMode->getFramingLayout();
  for (const std::shared_ptr<Layout>& picture : engine->getFinalLayoutPtrs()) {
    if (picture != nullptr) {
      platform().health->countPicture(framingTypeName(picture->layoutType));
    }
  }
}

// ---- Control ----

void ProductionRuleIPCService::reloadConfiguration(const std::string& /*topic*/, const std::string& /*msg*/) {
  PrConfig::load(configurationPath());
  listenToDecisions();
  mMultiStreamTrackingMode.setMaxStreams(static_cast<unsigned>(std::max(PrConfig::get().maxStreams, 0)));
}

void ProductionRuleIPCService::handleResetLayouts(const std::string& /*topic*/, const std::string& /*msg*/) {
  mTrackingMode->resetLayouts();
}

void ProductionRuleIPCService::handleDumpDebug(const std::string& /*topic*/, const std::string& /*msg*/) {
  mDebug = true;
  if (PrConfig::get().fynDebugFileEnabled && mFileWriter == nullptr) {
    openDumpWriter();
  }
}

void ProductionRuleIPCService::startRecording(const std::string& /*topic*/, const std::string& /*msg*/) {
  mRecording = true;
}

void ProductionRuleIPCService::stopRecording(const std::string& /*topic*/, const std::string& /*msg*/) {
  mRecording = false;
}

void ProductionRuleIPCService::handleTrackingMode(const std::string& /*topic*/, const std::string& msg) {
  PRB_LOGI(kTag, "%s: TRACKING_MODE_CTL_MSG: %s", "process", msg.c_str());
  const FramingMode mode = stringToFramingMode(msg);
  if (mode != mFramingMode) {
    updateTrackingMode(mode);
  }
}

void ProductionRuleIPCService::updateTrackingMode(FramingMode newMode) {
  PRB_LOGI(kTag, "%s  updating to newMode: %s -> %s", "updateTrackingMode",
           framingModeToString(mFramingMode).c_str(), framingModeToString(newMode).c_str());
  switch (newMode) {
    case FramingMode::SpeakerFraming:
      mTrackingMode = &mSpeakerFramingMode;
      break;
    case FramingMode::PeopleFraming:
      mTrackingMode = &mPeopleFramingMode;
      break;
    case FramingMode::MultiStream:
      mTrackingMode = &mMultiStreamTrackingMode;
      break;
    default:
      mTrackingMode = &mGroupTrackingMode;
      break;
  }
  mFramingMode = newMode;
  platform().health->setMode(framingModeToString(newMode));
  mTrackingMode->resetLayouts();
  mTrackingMode->updateTrackingModeLayout(mOperatingMode, nullptr);
}

void ProductionRuleIPCService::setFynOperatingMode(FynOperatingMode mode) {
  if (mode == mOperatingMode) {
    return;
  }
  mOperatingMode = mode;
  property_set("vendor.fynpilot.fynOperatingMode", std::to_string(number(mode)).c_str());
  PRB_LOGI(kTag, "%s: Setting fynOperatingMode: %d", "setFynOperatingMode", number(mode));
  if (mode == FynOperatingMode::Primary) {
    installSecondaryCallback();
    FynCamerasConfig::getMutable().fynCamId = 0;
  }
  updateTrackingMode(mFramingMode);
  pubSubClient().publish(std::string(topics::kControlPassThrough),
                         mode == FynOperatingMode::Primary ? "true" : "false");
}

// ---- Secondary layouts ----

void ProductionRuleIPCService::handleSecondaryLayout(const std::string& /*topic*/, const std::string& msg) {
  PRB_LOGD(kTag, "%s: secondary layout: %s", "process", msg.c_str());
  try {
    const std::vector<std::shared_ptr<Layout>> layouts = getSecondaryLayoutData(msg);
    if (!layouts.empty() && layouts.front() != nullptr) {
      processSecondaryLayout(layouts);
    }
  } catch (const nlohmann::json::exception& fault) {
    PRB_LOGE(kTag, "parsing error: %s, input=%s", fault.what(), msg.c_str());
  }
}

std::vector<std::shared_ptr<Layout>> ProductionRuleIPCService::getSecondaryLayoutData(
    const std::string& msg) const {
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

void ProductionRuleIPCService::processSecondaryLayout(const std::vector<std::shared_ptr<Layout>>& layouts) {
  mTrackingMode->setSecondaryLayout(layouts);
}

// ---- Debug ----

void ProductionRuleIPCService::logCameras(const std::string& topic, const std::string& /*msg*/) {
  PRB_LOGI(kTag, "%s: topic: %s msg: %s", "process", topic.c_str(), FynCamerasConfig::get().str().c_str());
}

void ProductionRuleIPCService::logCameraId(const std::string& topic, const std::string& /*msg*/) {
  PRB_LOGI(kTag, "%s topic: %s fynCamId: %d", "process", topic.c_str(), FynCamerasConfig::get().fynCamId);
}

}  // namespace fyn::productionrules
