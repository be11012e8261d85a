#include "tests/layouts/SpeakerRun.h"

#include <utility>

#include "model/FynCamerasConfig.h"

namespace fyn::productionrules::testing {

SpeakerRun::SpeakerRun(Dimension image, std::uint64_t stepMs) : mStepMs(stepMs) {
  PrConfig::set(PrConfig::DEFAULT);
  FynCamerasConfig::dispose();
  FynCamerasConfig& cameras = FynCamerasConfig::getMutable();
  cameras.setCameraLensModelDimension(0, image);
  cameras.fynCamId = 0;
  cameras.forCamId = 0;
  engine<SpeakerFramingLayout>();
}

SpeakerRun::~SpeakerRun() {
  PrConfig::set(PrConfig::DEFAULT);
  FynCamerasConfig::dispose();
}

SpeakerRun& SpeakerRun::with(const std::function<void(PrConfig&)>& change) {
  PrConfig config = PrConfig::get();
  change(config);
  PrConfig::set(config);
  return *this;
}

void SpeakerRun::prepareEngine() {
  mEngine->setDecisionListener(this);
}

bool SpeakerRun::see(const Scene& scene) {
  const std::shared_ptr<MLData> data = scene.mlData();
  mEngine->updatePeopleMap(data);
  const bool adopted = mEngine->applyingLayout(data);
  if (adopted) {
    mPictures.push_back(std::to_string(now()) + " " + picture());
  }
  const bool changed = adopted || mEngine->updateFeedPriorityOfFrame() || mEngine->updateLayoutFraming();
  environment.time.advanceTo(now() + mStepMs);
  return changed;
}

int SpeakerRun::watch(const Scene& scene, std::uint64_t ms) {
  int pictures = 0;
  for (const std::uint64_t end = now() + ms; now() < end;) {
    pictures += see(scene) ? 1 : 0;
  }
  return pictures;
}

std::string SpeakerRun::picture() const {
  const std::shared_ptr<Layout> layout = mEngine->getLayoutPtr();
  if (layout == nullptr) {
    return "none";
  }
  std::string text = layoutToString(layout->layoutType);
  for (const Frame& frame : layout->frames) {
    for (const std::int64_t id : frame.fynHeads) {
      text += " " + std::to_string(id);
    }
  }
  return text;
}

std::vector<std::string> SpeakerRun::takePictures() {
  return std::exchange(mPictures, {});
}

std::vector<LayoutDecision> SpeakerRun::takeDecisions() {
  return std::exchange(mDecisions, {});
}

void SpeakerRun::onDecision(const LayoutDecision& decision) {
  mDecisions.push_back(decision);
}

}  // namespace fyn::productionrules::testing
