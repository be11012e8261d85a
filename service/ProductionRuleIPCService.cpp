#include "service/ProductionRuleIPCService.h"

#include <algorithm>
#include <string_view>

#include "config/PrConfig.h"
#include "model/FynCamerasConfig.h"
#include "platform/Topics.h"
#include "platform/VisionSettings.h"
#include "service/TopicText.h"

namespace fyn::productionrules {

namespace {

constexpr const char* kTag = "ProductionRulesIPCService";
constexpr std::uint32_t kPeriodMs = 4000;

// ---- Which messages a row of the dispatch table takes ----

using Text = const std::string&;

template <const std::string_view& kTopic>
bool is(Text topic, Text /*msg*/) {
  return topic == kTopic;
}

template <const std::string_view& kCommand>
bool isCommand(Text topic, Text msg) {
  return topic == topics::kControl && msg == kCommand;
}

bool isCameraParameters(Text topic, Text /*msg*/) {
  return com::quil::pubsub::topicCovers(topics::kCameraParameters, topic);
}

bool isLayoutOfPrimary(Text topic, Text /*msg*/) {
  return topic == com::quil::pubsub::appendSubtopic(topics::kSecondaryScene,
                                                    std::to_string(FynCamerasConfig::get().fynCamId));
}

bool isRemoteCameraMoved(Text topic, Text /*msg*/) {
  return topic == appendRemoteToTopic(topics::kCameraMoved);
}

}  // namespace

ProductionRuleIPCService::ProductionRuleIPCService(const Platform& given, const std::string& name)
    : BaseIPCService(given, kPeriodMs, name),
      mProvider(std::make_shared<QuilProviderConnection>(given)),
      mModes(platform(), mNotifier),
      mPublisher(platform(), mNotifier, mModes, *mProvider),
      mInput(platform(), mModes),
      mCameras(pubSubClient(), *this, mModes) {
  PRB_LOGI(kTag, "ProductionRuleIPCService::ctor()");
  mModes.start();
  if (PrConfig::get().fynDebugFileEnabled) {
    mInput.dumpDebug();
  }
  mProvider->listenToAppearances();
  connectToQuilProvider();
  mPublisher.listenToDecisions();
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

void ProductionRuleIPCService::process(const std::string& topic, const std::string& msg) {
  BaseIPCService::process(topic, msg);
  using Service = ProductionRuleIPCService;
  struct Route {
    bool (*takes)(Text topic, Text msg);
    void (*handle)(Service& service, Text topic, Text msg);
  };
  // The first row that takes the message handles it: the order of the rows is the rule.
  static constexpr Route kRoutes[] = {
      {is<topics::kVisionResult>, [](Service& s, Text, Text m) { s.mInput.handleVisionResult(m); }},
      {isCommand<control::kConfigChange>, [](Service& s, Text, Text) { s.reloadConfiguration(); }},
      {isCameraParameters, [](Service& s, Text t, Text m) { s.mCameras.handleCameraParametersMsg(t, m); }},
      {isCommand<control::kResetLayouts>, [](Service& s, Text, Text) { s.trackingMode().resetLayouts(); }},
      {isCommand<control::kDumpDebug>, [](Service& s, Text, Text) { s.mInput.dumpDebug(); }},
      {is<topics::kRecordStart>, [](Service& s, Text, Text) { s.mInput.setRecording(true); }},
      {is<topics::kRecordStop>, [](Service& s, Text, Text) { s.mInput.setRecording(false); }},
      {is<topics::kTrackingMode>, [](Service& s, Text, Text m) { s.mModes.handleTrackingMode(m); }},
      {isLayoutOfPrimary, [](Service& s, Text, Text m) { s.mInput.handleSecondaryLayout(m); }},
      {is<topics::kCamera>, [](Service& s, Text, Text m) { s.mCameras.handleCamera(m); }},
      {is<topics::kCameras>, [](Service& s, Text, Text m) { s.mCameras.handleCameras(m); }},
      {is<topics::kDebugLogCameras>,
       [](Service&, Text t, Text) {
         PRB_LOGI(kTag, "%s: topic: %s msg: %s", "process", t.c_str(), FynCamerasConfig::get().str().c_str());
       }},
      {is<topics::kDebugLogCameraId>,
       [](Service&, Text t, Text) {
         PRB_LOGI(kTag, "%s topic: %s fynCamId: %d", "process", t.c_str(), FynCamerasConfig::get().fynCamId);
       }},
      {isRemoteCameraMoved, [](Service& s, Text, Text m) { s.mCameras.handleRemoteFynCameraMovedMsg(m); }},
  };
  for (const Route& route : kRoutes) {
    if (route.takes(topic, msg)) {
      route.handle(*this, topic, msg);
      return;
    }
  }
  PRB_LOGE(kTag, "ProductionRuleIPCService::%s unknown topic: %s", "process", topic.c_str());
}

void ProductionRuleIPCService::reloadConfiguration() {
  PrConfig::load(configurationPath());
  mPublisher.listenToDecisions();
  mModes.setMaxStreams(static_cast<unsigned>(std::max(PrConfig::get().maxStreams, 0)));
}

}  // namespace fyn::productionrules
