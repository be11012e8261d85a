#include "tests/layouts/EngineRun.h"

#include <sstream>
#include <utility>

#include "layouts/people/PeopleFrameTimerSetting.h"
#include "model/FynCamerasConfig.h"

namespace fyn::productionrules::testing {

namespace {

std::string pictureOf(const Layout& layout) {
  std::string text = layoutToString(layout.layoutType);
  for (const Frame& frame : layout.frames) {
    const char* separator = " [";
    for (const std::int64_t id : frame.fynHeads) {
      text += separator + std::to_string(id);
      separator = " ";
    }
    text += frame.fynHeads.empty() ? "" : "]";
  }
  return text;
}

}  // namespace

EngineRun::EngineRun(std::initializer_list<std::int32_t> cameras) {
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

EngineRun& EngineRun::with(const std::function<void(PrConfig&)>& change) {
  PrConfig config = PrConfig::get();
  change(config);
  PrConfig::set(config);
  if (mEngine != nullptr) {
    prepareEngine();
  }
  return *this;
}

void EngineRun::prepareEngine() {
  // Speaker engines keep a setting of their own.
  mEngine->setTimerSetting(std::make_shared<PeopleFrameTimerSetting>(PrConfig::get()));
  mEngine->setDecisionListener(this);
}

bool EngineRun::see(const Scene& scene) {
  return see(scene.mlData());
}

bool EngineRun::see(const std::shared_ptr<MLData>& seen) {
  const std::shared_ptr<MLData> data = mEngine->findPresent(seen);
  mEngine->updatePeopleMap(data);
  const bool adopted = mEngine->applyingLayout(data);
  if (adopted) {
    mPictures.push_back(std::to_string(now()) + " " + picture());
  }
  const bool changed = adopted || mEngine->updateFeedPriorityOfFrame() || mEngine->updateLayoutFraming();
  environment.time.advanceTo(now() + stepMs);
  return changed;
}

int EngineRun::watch(const Scene& scene, std::uint64_t ms) {
  int pictures = 0;
  for (const std::uint64_t end = now() + ms; now() < end;) {
    pictures += see(scene) ? 1 : 0;
  }
  return pictures;
}

std::string EngineRun::picture() const {
  const std::shared_ptr<Layout> layout = mEngine->getLayoutPtr();
  return layout != nullptr ? pictureOf(*layout) : "none";
}

std::string EngineRun::streamPictures() const {
  std::string text;
  for (const std::shared_ptr<Layout>& layout : mEngine->getFinalLayoutPtrs()) {
    if (layout != nullptr && layout->streamId != 0) {
      text += (text.empty() ? "" : ", ") + std::to_string(layout->streamId) + " " +
              (layout->layoutType == FramingType::GROUP ? "GROUP" : pictureOf(*layout));
    }
  }
  return text;
}

std::vector<std::string> EngineRun::takePictures() {
  return std::exchange(mPictures, {});
}

std::vector<LayoutDecision> EngineRun::takeDecisions() {
  return std::exchange(decisions, {});
}

Scene peopleAt(const std::string& places) {
  constexpr int kUsualHeight = 300;
  Scene result = scene();
  std::istringstream words(places);
  for (std::string word; words >> word;) {
    std::istringstream place(word);
    char mark = 0;
    int id = 0;
    int x = 0;
    int y = kUsualHeight;
    place >> id >> mark >> x;
    if (place >> mark) {
      place >> y;
    }
    result.person(id).at(x, y);
  }
  return result;
}

}  // namespace fyn::productionrules::testing
