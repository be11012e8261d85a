#include "service/ResultPublisher.h"

#include "config/PrConfig.h"
#include "platform/Ticks.h"
#include "platform/Topics.h"
#include "platform/VisionSettings.h"
#include "service/DecisionDocument.h"

namespace fyn::productionrules {

namespace {
constexpr const char* kTag = "ProductionRulesIPCService";
}

ResultPublisher::ResultPublisher(const Platform& platform, JsonLayoutNotifier& notifier, TrackingModes& modes,
                                 QuilProviderConnection& provider)
    : mPlatform(platform), mModes(modes) {
  notifier.setJsonCallback([this, &provider](const std::string& json, bool debug) {
    if (debug) {
      PRB_LOGD(kTag, "%s: Send debug layout", "operator()");
      publish(topics::kDebugScene, json);
      return;
    }
    countPictures();
    publish(topics::kScene, json);
    provider.sendScene(json);
  });
  notifier.setJsonSecondaryCallback([this](const std::string& json, int camId) {
    if (mModes.operatingMode() == FynOperatingMode::Primary) {
      PRB_LOGI(kTag, "%s: Send secondary layout: cam=%d - json=%s", "operator()", camId, json.c_str());
      publish(com::quil::pubsub::appendSubtopic(topics::kSecondaryScene, std::to_string(camId)), json);
    }
  });
  notifier.setDebugTimerCallbackFuncP(
      [this](const std::string& json) { publish(topics::kTimerDebug, json); });
  notifier.setPeopleCountCallbackFuncP(
      [this](const std::string& json) { publish(topics::kPeopleCount, json); });
}

void ResultPublisher::setDecisionListener(DecisionListener* next) {
  mNextListener = next;
  listenToDecisions();
}

void ResultPublisher::listenToDecisions() {
  mModes.setDecisionListener(PrConfig::get().fynDebugDecisionsEnabled ? this : mNextListener);
}

void ResultPublisher::onDecision(const LayoutDecision& decision) {
  if (mNextListener != nullptr) {
    mNextListener->onDecision(decision);
  }
  publish(topics::kDecisions, decisionDocument(GetTicks(), decision));
}

void ResultPublisher::publish(std::string_view topic, const std::string& document) {
  mPlatform.bus->publish(std::string(topic), document);
}

void ResultPublisher::countPictures() {
  const std::shared_ptr<BaseLayout> engine = mModes.active().getFramingLayout();
  for (const std::shared_ptr<Layout>& picture : engine->getFinalLayoutPtrs()) {
    if (picture != nullptr) {
      mPlatform.health->countPicture(framingTypeName(picture->layoutType));
    }
  }
}

}  // namespace fyn::productionrules
