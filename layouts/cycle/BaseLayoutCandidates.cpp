// The part of BaseLayout that says who is there, what layout they make and for which stream.
#include <algorithm>
#include <utility>

#include "geometry/GroupLayout.h"
#include "layouts/cycle/BaseLayout.h"
#include "model/FynCamerasConfig.h"
#include "platform/ServiceState.h"
#include "platform/Ticks.h"
#include "platform/VisionSettings.h"

namespace fyn::productionrules {

namespace {

constexpr const char* kTag = "BaseLayout";
constexpr Rect kWholeOutput{0, 0, kOutputSize.width, kOutputSize.height};

// Milliseconds after which the people count is published although it has not changed.
constexpr std::uint64_t kPeopleCountPeriod = 5000;

}  // namespace

// ---- Candidates ----

void BaseLayout::reportInput(const MLData& /*data*/) {}

std::shared_ptr<Layout> BaseLayout::createLayout(const std::shared_ptr<MLData>& mlData) {
  auto layout = std::make_shared<Layout>();
  const std::vector<std::shared_ptr<FynHead>>& heads = mlData->getHeads();
  layout->layoutType = getLayoutTypeForGroupFrame(static_cast<int>(heads.size()));
  constructGroupLayout(heads, layout, static_cast<std::uint32_t>(FynCamerasConfig::get().fynCamId));
  layout->frameNumber = mlData->frameNumber;
  layout->faceCount = static_cast<std::int32_t>(heads.size());
  fillPositionRect(layout);
  return layout;
}

FramingType BaseLayout::getLayoutTypeForGroupFrame(int headCount) {
  if (headCount == 0) {
    return FramingType::ROOM;
  }
  return headCount == 1 ? FramingType::HEAD : FramingType::GROUP;
}

void BaseLayout::fillPositionRect(std::shared_ptr<Layout>& layout) {
  if (layout->frames.empty()) {
    return;
  }
  Frame& frame = layout->frames.front();
  frame.dest = kWholeOutput;
  if (layout->layoutType == FramingType::PROXIMITY) {
    frame.frameLayout = kFrameLayoutProximitySingleWide;
  } else if (layout->layoutType == FramingType::HEAD) {
    frame.frameLayout = kFrameLayoutHeadSingle;
  }
}

// ---- Streams ----

void BaseLayout::updateLayoutWithStreamInfo(std::shared_ptr<Layout>& layout, unsigned streamId) {
  layout->streamId = static_cast<std::int32_t>(streamId);
  layout->isLogicalStream = layout->streamId < 1;
  PRB_LOGD(kTag, "%s Layout's StreamID: %d, isLogical: %d", "updateLayoutWithStreamInfo", layout->streamId,
           static_cast<int>(layout->isLogicalStream));
}

void BaseLayout::setDisplayLayoutStreamIDS(std::vector<unsigned> ids) {
  if (ids.empty()) {
    return;
  }
  mDisplayStreamIds = std::move(ids);
  mLayoutCount = static_cast<unsigned>(mDisplayStreamIds.size());
  PRB_LOGD(kTag, "%s Layout's Total Layout Count %d", "setDisplayLayoutStreamIDS",
           static_cast<int>(mLayoutCount));
}

// Deliberately not the argument: this engine makes one layout.
void BaseLayout::setMaxLayouts(unsigned /*count*/) {
  mLayoutCount = 1;
}

std::vector<std::shared_ptr<Layout>> BaseLayout::getFinalLayoutPtrs() const {
  return {mState.mCurLayout};
}

std::vector<std::shared_ptr<Layout>> BaseLayout::getNextLayoutPtrs() const {
  return {mState.mNextLayout};
}

std::vector<Rect> BaseLayout::getSceneRects() const {
  std::vector<Rect> rects;
  if (mState.mCurLayout == nullptr) {
    return rects;
  }
  rects.reserve(mState.mCurLayout->frames.size());
  for (const Frame& frame : mState.mCurLayout->frames) {
    rects.push_back(frame.source);
  }
  return rects;
}

// ---- People ----

void BaseLayout::updatePeopleMap(const std::shared_ptr<MLData>& mlData) {
  const std::vector<std::shared_ptr<FynHead>>& heads = mlData->getHeads();
  const int known = static_cast<int>(mState.people.size());
  const int seen = static_cast<int>(heads.size());
  if (known != seen) {
    PRB_LOGI(kTag, "%s: KORVALDEBUG PEOPLE COUNT CHANGED  current: %d new: %d", "updatePeopleMap", known,
             seen);
  }
  replacePeople(heads);
}

void BaseLayout::replacePeople(const std::vector<std::shared_ptr<FynHead>>& persons) {
  ++mState.peopleVersion;
  // The usual case. The same people in another order make another map.
  if (std::equal(mState.entries.begin(), mState.entries.end(), persons.begin(), persons.end(),
                 [](const auto* entry, const auto& person) { return entry->first == person->id; })) {
    for (std::size_t i = 0; i < persons.size(); ++i) {
      mState.entries[i]->second = persons[i];
    }
    return;
  }
  // A map of its own, not the old one cleared: the order of the dump must not depend on who was here before.
  PeopleMap people;
  std::vector<PeopleMap::value_type*> entries;
  for (const std::shared_ptr<FynHead>& person : persons) {
    if (const auto [entry, isNew] = people.emplace(person->id, person); isNew) {
      entries.push_back(&*entry);
    }
  }
  mState.people = std::move(people);
  mState.entries = std::move(entries);
}

unsigned BaseLayout::getPeopleCount() {
  return static_cast<unsigned>(mState.people.size());
}

bool BaseLayout::shouldPublishUpdatedPeopleCount(const std::shared_ptr<MLData>& mlData) {
  if (mState.people.size() != mlData->getHeads().size()) {
    return true;
  }
  const std::uint32_t now = GetTicks();
  // In 64 bits, so that a wrapped clock counts as elapsed.
  if (std::uint64_t{now} - std::uint64_t{ServiceState::current().times.lastPeopleCountSend} <
      kPeopleCountPeriod) {
    return false;
  }
  ServiceState::current().times.lastPeopleCountSend = now;
  return true;
}

std::shared_ptr<Layout> BaseLayout::keepEverybody(FramingType type, const char* reason) {
  const bool isOfEverybody = type == FramingType::GROUP || type == FramingType::ROOM;
  if (!isOfEverybody || mState.mCurLayout == nullptr || mState.mCurLayout->layoutType != type) {
    return nullptr;
  }
  mState.reason = reason;
  return mState.mCurLayout;
}

PeopleMap& BaseLayout::getHeadMapForGroup(const Frame& /*frame*/) {
  return mState.people;
}

}  // namespace fyn::productionrules
