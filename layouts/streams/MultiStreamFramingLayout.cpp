#include "layouts/streams/MultiStreamFramingLayout.h"

#include <algorithm>
#include <utility>

#include "config/PrConfig.h"
#include "layouts/group/GroupFramingTimerSetting.h"
#include "layouts/people/PeopleFrameTimerSetting.h"

namespace fyn::productionrules {

namespace {

// The number of streams that the configuration asks for; a negative one is none.
unsigned configuredStreams() {
  return static_cast<unsigned>(std::max(PrConfig::get().maxStreams, 0));
}

template <typename Setting>
std::shared_ptr<BaseTimerSetting> orConfigured(const std::shared_ptr<BaseTimerSetting>& setting) {
  return std::dynamic_pointer_cast<Setting>(setting) != nullptr ? setting
                                                                : std::make_shared<Setting>(PrConfig::get());
}

std::vector<std::shared_ptr<Layout>> joined(std::vector<std::shared_ptr<Layout>> first,
                                            const std::vector<std::shared_ptr<Layout>>& others) {
  first.insert(first.end(), others.begin(), others.end());
  return first;
}

}  // namespace

MultiStreamFramingLayout::MultiStreamFramingLayout() {
  for (BaseLayout* const engine : {static_cast<BaseLayout*>(&mGroup), static_cast<BaseLayout*>(&mPeople)}) {
    // Whatever clock this engine is given later.
    engine->setCurrentTimerTickFun([this] { return tick(); });
  }
  MultiStreamFramingLayout::setTimerSetting(mTimerSetting);
  MultiStreamFramingLayout::setMaxLayouts(configuredStreams());
}

MultiStreamFramingLayout::~MultiStreamFramingLayout() = default;

const char* MultiStreamFramingLayout::getTag() const {
  return "MultiStreamFramingLayout";
}

void MultiStreamFramingLayout::setTimerSetting(std::shared_ptr<BaseTimerSetting> setting) {
  mGroup.setTimerSetting(orConfigured<GroupFramingTimerSetting>(setting));
  mPeople.setTimerSetting(orConfigured<PeopleFrameTimerSetting>(setting));
  mTimerSetting = std::move(setting);
}

void MultiStreamFramingLayout::setDecisionListener(DecisionListener* listener) {
  BaseLayout::setDecisionListener(listener);
  mGroup.setDecisionListener(listener);
  mPeople.setDecisionListener(listener);
}

// ---- The cycle ----

void MultiStreamFramingLayout::updatePeopleMap(const std::shared_ptr<MLData>& mlData) {
  BaseLayout::updatePeopleMap(mlData);
  mGroup.updatePeopleMap(mlData);
}

bool MultiStreamFramingLayout::applyingLayout(const std::shared_ptr<MLData>& mlData) {
  mLastFrameNumber = mlData->frameNumber;
  mStreamIds = streamIds();
  const bool streamsChanged = mPeople.setStreamIds(mStreamIds);
  mPeople.assignPeople(*mlData);
  const bool groupAdopted = mGroup.applyingLayout(mlData);
  std::vector<bool> adopted(mStreamIds.size());
  for (std::size_t i = 0; i < adopted.size(); ++i) {
    adopted[i] = mPeople.applyStreamLayout(i, mlData);
  }
  const bool changed =
      streamsChanged || groupAdopted || std::find(adopted.begin(), adopted.end(), true) != adopted.end();
  if (changed) {
    // The owner asks no further after a true answer; the other streams' waits must not notice.
    if (!groupAdopted) {
      mGroup.updateLayoutFraming();
    }
    for (std::size_t i = 0; i < adopted.size(); ++i) {
      if (!adopted[i]) {
        mPeople.updateStreamFraming(i);
      }
    }
  }
  mirrorFirstStream();
  return changed;
}

bool MultiStreamFramingLayout::updateLayoutFraming() {
  const bool group = mGroup.updateLayoutFraming();
  return mPeople.updateLayoutFraming() || group;
}

std::shared_ptr<MLData> MultiStreamFramingLayout::findPresent(const std::shared_ptr<MLData>& mlData) {
  return mPeople.findPresent(mlData);
}

bool MultiStreamFramingLayout::process(const std::shared_ptr<MLData>& mlData) {
  const std::shared_ptr<MLData> present = findPresent(mlData);
  updatePeopleMap(present);
  return applyingLayout(present) || updateFeedPriorityOfFrame() || updateLayoutFraming();
}

bool MultiStreamFramingLayout::applySecondaryLayout(const std::shared_ptr<Layout>& layout) {
  const auto named = layout == nullptr ? mStreamIds.end()
                                       : std::find(mStreamIds.begin(), mStreamIds.end(),
                                                   static_cast<unsigned>(layout->streamId));
  if (layout != nullptr && named == mStreamIds.end()) {
    // It takes the place of stream 0 under its id: nobody knows the other one.
    layout->streamId = 0;
    layout->isLogicalStream = true;
  }
  const bool applied = named == mStreamIds.end()
                           ? mGroup.applySecondaryLayout(layout)
                           : mPeople.applySecondaryLayoutToStream(
                                 static_cast<std::size_t>(named - mStreamIds.begin()), layout);
  mirrorFirstStream();
  return applied;
}

void MultiStreamFramingLayout::resetLayouts() {
  mGroup.resetLayouts();
  mPeople.resetLayouts();
  mirrorFirstStream();
}

bool MultiStreamFramingLayout::isThereATimerRunning() const {
  return mGroup.isThereATimerRunning() || mPeople.isThereATimerRunning();
}

void MultiStreamFramingLayout::mirrorFirstStream() {
  mState.mCurLayout = mGroup.getLayoutPtr();
  mState.mNextLayout = mGroup.getNextLayoutPtr();
}

// ---- Streams ----

void MultiStreamFramingLayout::setMaxLayouts(unsigned count) {
  mLayoutCount = count;
}

// The ids that were given, as far as they are ids of their own; the lowest unused ones for the rest.
std::vector<unsigned> MultiStreamFramingLayout::streamIds() const {
  const std::size_t count = std::min(mLayoutCount, kMaxStreams);
  std::vector<unsigned> ids;
  ids.reserve(count);
  const auto isUnused = [&](unsigned id) {
    return id != 0 && std::find(ids.begin(), ids.end(), id) == ids.end();
  };
  for (std::size_t i = 0; i < mDisplayStreamIds.size() && ids.size() < count; ++i) {
    if (isUnused(mDisplayStreamIds[i])) {
      ids.push_back(mDisplayStreamIds[i]);
    }
  }
  for (unsigned id = 1; ids.size() < count; ++id) {
    if (isUnused(id)) {
      ids.push_back(id);
    }
  }
  return ids;
}

std::vector<std::shared_ptr<Layout>> MultiStreamFramingLayout::getFinalLayoutPtrs() const {
  return joined(mGroup.getFinalLayoutPtrs(), mPeople.getFinalLayoutPtrs());
}

std::vector<std::shared_ptr<Layout>> MultiStreamFramingLayout::getNextLayoutPtrs() const {
  return joined(mGroup.getNextLayoutPtrs(), mPeople.getNextLayoutPtrs());
}

}  // namespace fyn::productionrules
