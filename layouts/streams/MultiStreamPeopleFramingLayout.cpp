#include "layouts/streams/MultiStreamPeopleFramingLayout.h"

#include <algorithm>
#include <set>
#include <utility>

#include "config/PrConfig.h"
#include "geometry/FramePredicates.h"
#include "geometry/GroupLayout.h"
#include "model/FynCamerasConfig.h"

namespace fyn::productionrules {

namespace {

// In milliseconds. Stream 0 follows walkers; others that did so too would change all the time.
constexpr std::uint32_t kRestlessMs = 20000;
constexpr std::uint32_t kRestlessRoomMs = 60000;

}  // namespace

/** Puts one stream's state in the place of the engine's own, until it goes out of scope. The people are those
 * of all streams. */
class MultiStreamPeopleFramingLayout::Selection {
 public:
  Selection(MultiStreamPeopleFramingLayout& engine, Stream& stream) : mEngine(engine) {
    mEngine.mSelected = &stream;
    exchange();
  }
  ~Selection() {
    exchange();
    mEngine.mSelected = nullptr;
  }
  Selection(const Selection&) = delete;
  Selection& operator=(const Selection&) = delete;

 private:
  void exchange() { std::swap<PictureState>(mEngine.mState, mEngine.mSelected->state); }

  MultiStreamPeopleFramingLayout& mEngine;
};

MultiStreamPeopleFramingLayout::MultiStreamPeopleFramingLayout() = default;

MultiStreamPeopleFramingLayout::~MultiStreamPeopleFramingLayout() = default;

const char* MultiStreamPeopleFramingLayout::getTag() const {
  return "MultiStreamPeopleFramingLayout";
}

// ---- Streams ----

template <typename Operation>
bool MultiStreamPeopleFramingLayout::inEveryStream(Operation operation) {
  if (mSelected != nullptr) {
    return operation();
  }
  bool result = false;
  for (Stream& stream : mStreams) {
    const Selection selection(*this, stream);
    result |= operation();
  }
  return result;
}

bool MultiStreamPeopleFramingLayout::setStreamIds(const std::vector<unsigned>& ids) {
  bool changed = false;
  for (std::size_t i = ids.size(); i < mStreams.size(); ++i) {
    changed |= mStreams[i].state.mCurLayout != nullptr;
  }
  if (mStreams.size() != ids.size()) {
    mStreams.resize(ids.size());
    mAssignment.resize(ids.size());
  }
  for (std::size_t i = 0; i < ids.size(); ++i) {
    Stream& stream = mStreams[i];
    if (std::exchange(stream.state.streamId, ids[i]) == ids[i]) {
      continue;
    }
    for (std::shared_ptr<Layout>* const layout : {&stream.state.mCurLayout, &stream.state.mNextLayout}) {
      if (*layout != nullptr) {
        updateLayoutWithStreamInfo(*layout, ids[i]);
      }
    }
    changed |= stream.state.mCurLayout != nullptr;
  }
  return changed;
}

const std::set<std::int64_t>& MultiStreamPeopleFramingLayout::peopleOnScreen(const Stream& stream) {
  static const std::set<std::int64_t> kNobody;
  if (stream.state.mCurLayout == nullptr || stream.state.mCurLayout->frames.empty()) {
    return kNobody;
  }
  const Frame& frame = stream.state.mCurLayout->frames.front();
  return frame.frameType == FramingType::GROUP ? stream.group : frame.fynHeads;
}

void MultiStreamPeopleFramingLayout::assignPeople(const MLData& data) {
  mOnScreen.clear();
  for (const Stream& stream : mStreams) {
    mOnScreen.push_back(&peopleOnScreen(stream));
  }
  mAssignment.setShown(mOnScreen);
  const auto camId = static_cast<std::uint32_t>(FynCamerasConfig::get().fynCamId);
  const HeadsInView heads = headsForTiles(camId);
  mInputFaults.report(data, heads, getTag());
  const std::vector<Seat> seats = findSeats(data, heads);
  const std::vector<std::vector<Seat>>& people =
      mAssignment.assign(seats, PrConfig::get().newPfFeatureEnabled);
  for (std::size_t i = 0; i < mStreams.size(); ++i) {
    std::vector<std::int64_t>& followed = mStreams[i].followed;
    followed.clear();
    for (const Seat& seat : people[i]) {
      followed.push_back(seat.person->id);
    }
    std::sort(followed.begin(), followed.end());
  }
  std::vector<std::shared_ptr<FynHead>> everybody;
  everybody.reserve(seats.size());
  for (const Seat& seat : seats) {
    everybody.push_back(seat.person);
  }
  replacePeople(everybody);
}

bool MultiStreamPeopleFramingLayout::applyStreamLayout(std::size_t stream,
                                                       const std::shared_ptr<MLData>& mlData) {
  const Selection selection(*this, mStreams[stream]);
  return PeopleFramingLayout::applyingLayout(mlData);
}

bool MultiStreamPeopleFramingLayout::updateStreamFraming(std::size_t stream) {
  const Selection selection(*this, mStreams[stream]);
  return PeopleFramingLayout::updateLayoutFraming();
}

bool MultiStreamPeopleFramingLayout::applySecondaryLayoutToStream(std::size_t stream,
                                                                  const std::shared_ptr<Layout>& layout) {
  const Selection selection(*this, mStreams[stream]);
  return applySecondaryLayout(layout);
}

bool MultiStreamPeopleFramingLayout::applyingLayout(const std::shared_ptr<MLData>& mlData) {
  assignPeople(*mlData);
  return inEveryStream([&] { return PeopleFramingLayout::applyingLayout(mlData); });
}

bool MultiStreamPeopleFramingLayout::updateLayoutFraming() {
  return inEveryStream([&] { return PeopleFramingLayout::updateLayoutFraming(); });
}

bool MultiStreamPeopleFramingLayout::verifyIfLayoutChangeNeeded(const std::shared_ptr<MLData>& mlData) {
  if (mSelected == nullptr) {
    assignPeople(*mlData);
  }
  return inEveryStream([&] { return PeopleFramingLayout::verifyIfLayoutChangeNeeded(mlData); });
}

void MultiStreamPeopleFramingLayout::applyNewLayout() {
  inEveryStream([&] {
    PeopleFramingLayout::applyNewLayout();
    return true;
  });
}

void MultiStreamPeopleFramingLayout::resetLayouts() {
  inEveryStream([&] {
    PeopleFramingLayout::resetLayouts();
    return true;
  });
}

bool MultiStreamPeopleFramingLayout::isThereATimerRunning() const {
  return std::any_of(mStreams.begin(), mStreams.end(), [](const Stream& stream) {
    return isTimerRunning(stream.state.mCurLayout.get(), stream.state.mNextLayout.get());
  });
}

std::vector<std::shared_ptr<Layout>> MultiStreamPeopleFramingLayout::layoutsOf(
    std::shared_ptr<Layout> PictureState::*which) const {
  std::vector<std::shared_ptr<Layout>> layouts;
  for (const Stream& stream : mStreams) {
    layouts.push_back(stream.state.*which);
  }
  return layouts;
}

// ---- One stream's picture ----

// The people of all streams have been looked at when they were assigned.
void MultiStreamPeopleFramingLayout::reportInput(const MLData& /*data*/) {}

std::shared_ptr<Layout> MultiStreamPeopleFramingLayout::createLayout(const std::shared_ptr<MLData>& mlData) {
  const auto camId = static_cast<std::uint32_t>(FynCamerasConfig::get().fynCamId);
  PeopleUnit& followed = mFollowed.front();
  followed.clear();
  bool walks = false;
  for (const std::int64_t id : mSelected->followed) {
    const auto person = mState.people.find(id);
    if (person != mState.people.end() && person->second->findHead(camId) != nullptr) {
      followed.push_back({person->second, camId});
      walks = walks || isRestless(*person->second);
    }
  }
  if (followed.empty() || walks || isFirstLook()) {
    return pictureOfEverybody(*mlData, walks ? "somebody walks" : isFirstLook() ? kFirstLook : "");
  }
  std::shared_ptr<Layout> layout =
      tilesOf(mFollowed, followed.size() > 1 ? FramingType::PROXIMITY : FramingType::HEAD);
  const Frame& frame = layout->frames.front();
  if (!isSurelyShown(frame) && !tryView(frame)) {
    return pictureOfEverybody(*mlData, "");
  }
  if (layout != mState.mCurLayout) {
    layout->frameNumber = mlData->frameNumber;
  }
  return layout;
}

std::shared_ptr<Layout> MultiStreamPeopleFramingLayout::pictureOfEverybody(const MLData& data,
                                                                           const char* reason) {
  const FramingType type = mState.people.empty() ? FramingType::ROOM : FramingType::GROUP;
  if (std::shared_ptr<Layout> kept = keepEverybody(type, reason)) {
    return kept;
  }
  std::vector<std::shared_ptr<FynHead>> everybody;
  for (const auto& [id, person] : mState.people) {
    everybody.push_back(person);
  }
  auto layout = std::make_shared<Layout>();
  layout->layoutType = type;
  layout->reason = reason;
  constructGroupLayout(everybody, layout, static_cast<std::uint32_t>(FynCamerasConfig::get().fynCamId));
  fillPositionRect(layout);
  layout->frameNumber = data.frameNumber;
  layout->faceCount = static_cast<std::int32_t>(std::count_if(
      everybody.begin(), everybody.end(), [this](const auto& person) { return isMeant(*person); }));
  return layout;
}

void MultiStreamPeopleFramingLayout::fillPositionRect(std::shared_ptr<Layout>& layout) {
  // No tiles: every stream is a picture of its own.
  BaseLayout::fillPositionRect(layout);  // NOLINT(bugprone-parent-virtual-call)
}

void MultiStreamPeopleFramingLayout::calculateGroupFraming(Frame& frame) {
  PeopleFramingLayout::calculateGroupFraming(frame);
  if (mSelected != nullptr) {
    mSelected->group = {mSelected->followed.begin(), mSelected->followed.end()};
  }
}

bool MultiStreamPeopleFramingLayout::updateCurrentTimer() {
  return inEveryStream([&] { return PeopleFramingLayout::updateCurrentTimer(); });
}

// A stream follows its people also when they move closer: nothing else would ever bring the camera nearer.
HeadPosition MultiStreamPeopleFramingLayout::positionInPlace(const Frame& frame, const Rect& base) const {
  return isGFMoveClose(frame.detectionBoundary, base) ? HeadPosition::GROUP_MOVE_CLOSE : HeadPosition::CENTER;
}

bool MultiStreamPeopleFramingLayout::showsWholeRoom() const {
  return isFirstLook() ||
         hasAnybodyWalked(PrConfig::get().steadyFramingEnabled ? kRestlessRoomMs : kRestlessMs);
}

// Whether a frame for the person would soon have to follow a walk.
bool MultiStreamPeopleFramingLayout::isRestless(const FynHead& person) const {
  return PrConfig::get().steadyFramingEnabled && groupOnScreen() != nullptr
             ? presence().hasWalked(person.id, kRestlessMs, tick())
             : hasWalked(person);
}

bool MultiStreamPeopleFramingLayout::isMeant(const FynHead& person) const {
  return mSelected == nullptr ||
         std::binary_search(mSelected->followed.begin(), mSelected->followed.end(), person.id);
}

std::shared_ptr<MLData> MultiStreamPeopleFramingLayout::findPresent(const std::shared_ptr<MLData>& mlData) {
  std::shared_ptr<MLData> present = PeopleFramingLayout::findPresent(mlData);
  if (!usesPresence() || presence().renamed().empty()) {
    return present;
  }
  inEveryStream([&] {
    takeNewNumbers();
    return true;
  });
  for (const PersonRenamed& renamed : presence().renamed()) {
    mAssignment.rename(renamed.before->id, renamed.now->id);
    for (Stream& stream : mStreams) {
      if (stream.group.erase(renamed.before->id) != 0) {
        stream.group.insert(renamed.now->id);
      }
    }
  }
  return present;
}

}  // namespace fyn::productionrules
