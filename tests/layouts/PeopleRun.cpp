#include "tests/layouts/PeopleRun.h"

#include "layouts/people/PeopleFrameTimerSetting.h"
#include "model/FynCamerasConfig.h"

namespace fyn::productionrules::testing {

PeopleRun::PeopleRun(std::initializer_list<std::int32_t> cameras) {
  PrConfig::set(PrConfig::DEFAULT);
  FynCamerasConfig::dispose();
  FynCamerasConfig& config = FynCamerasConfig::getMutable();
  for (const std::int32_t camera : cameras) {
    FynCamInfo info;
    info.isAttached = true;
    info.ids.fynCamId = camera;
    config.fynCamInfoMap[camera] = info;
  }
  config.fynCamId = cameras.size() == 0 ? -1 : *cameras.begin();
  config.forCamId = config.fynCamId;
}

PeopleRun::~PeopleRun() {
  PrConfig::set(PrConfig::DEFAULT);
  FynCamerasConfig::dispose();
}

PeopleRun& PeopleRun::with(const std::function<void(PrConfig&)>& change) {
  PrConfig config = PrConfig::get();
  change(config);
  PrConfig::set(config);
  if (mEngine != nullptr) {
    prepareEngine();
  }
  return *this;
}

void PeopleRun::prepareEngine() {
  mEngine->setTimerSetting(std::make_shared<PeopleFrameTimerSetting>(PrConfig::get()));
  mEngine->setDecisionListener(this);
}

bool PeopleRun::see(const Scene& scene) {
  return see(scene.mlData());
}

bool PeopleRun::see(const std::shared_ptr<MLData>& data) {
  mEngine->updatePeopleMap(data);
  const bool changed =
      mEngine->applyingLayout(data) || mEngine->updateFeedPriorityOfFrame() || mEngine->updateLayoutFraming();
  environment.time.advanceTo(environment.time.now() + kStepMs);
  return changed;
}

int PeopleRun::watch(const Scene& scene, std::uint64_t ms) {
  int pictures = 0;
  for (const std::uint64_t end = environment.time.now() + ms; environment.time.now() < end;) {
    pictures += see(scene) ? 1 : 0;
  }
  return pictures;
}

std::string PeopleRun::picture() const {
  const std::shared_ptr<Layout> layout = mEngine->getLayoutPtr();
  if (layout == nullptr) {
    return "none";
  }
  std::string text = layoutToString(layout->layoutType);
  for (const Frame& frame : layout->frames) {
    text += " [";
    for (const std::int64_t id : frame.fynHeads) {
      text += (text.back() == '[' ? "" : " ") + std::to_string(id);
    }
    text += "]";
  }
  return text;
}

std::vector<std::string> PeopleRun::takeChanges() {
  return std::exchange(mChanges, {});
}

void PeopleRun::onDecision(const LayoutDecision& decision) {
  decisions.push_back(decision);
  if (decision.kind == DecisionKind::Adopted || decision.kind == DecisionKind::FeedPriority) {
    mChanges.push_back(std::to_string(environment.time.now()) + " " + decisionKindText(decision.kind) + " " +
                       layoutToString(decision.to));
  }
}

}  // namespace fyn::productionrules::testing
