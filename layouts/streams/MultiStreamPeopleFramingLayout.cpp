#include "layouts/streams/MultiStreamPeopleFramingLayout.h"

#include <algorithm>
#include <set>
#include <utility>

#include "config/PrConfig.h"
#include "geometry/FramePredicates.h"
#include "geometry/GroupLayout.h"
#include "layouts/people/PeopleViews.h"
#include "model/FynCamerasConfig.h"

namespace fyn::productionrules {

namespace {

// Whether the frame can be cut from its camera without cutting its people. Leaves it as it is.
bool canShow(BaseLayout& engine, Frame& frame) {
  const Rect source = frame.source;
  const Rect boundary = frame.detectionBoundary;
  engine.calculateRuleOfThirdFor(frame);
  const bool isWhole = showsWholeHeads(frame, engine.peopleMap(), engine.getImageSize(frame));
  frame.source = source;
  frame.detectionBoundary = boundary;
  return isWhole;
}

// More people than this in one frame count as a large proximity.
constexpr std::int32_t kMaxNeighbours = 3;

void countFrame(Layout& layout) {
  if (layout.layoutType == FramingType::HEAD) {
    layout.headFrameCount = 1;
  } else if (layout.layoutType == FramingType::PROXIMITY) {
    (layout.faceCount <= kMaxNeighbours ? layout.proximityFrameCount : layout.largeProximityFrameCount) = 1;
  }
}

}  // namespace

/** Puts one stream's layouts and people in the place of the engine's own, until it goes out of scope. */
class MultiStreamPeopleFramingLayout::Selection {
 public:
  Selection(MultiStreamPeopleFramingLayout& engine, Stream& stream) : mEngine(engine), mStream(stream) {
    exchange();
    mEngine.mSelected = &stream;
    mEngine.mStreamId = stream.id;
  }
  ~Selection() {
    mEngine.mStreamId = 0;
    mEngine.mSelected = nullptr;
    exchange();
  }
  Selection(const Selection&) = delete;
  Selection& operator=(const Selection&) = delete;

 private:
  void exchange() {
    std::swap(mEngine.mCurLayout, mStream.current);
    std::swap(mEngine.mNextLayout, mStream.next);
    std::swap(mEngine.mChosenTimer, mStream.chosenTimer);
    std::swap(mEngine.mPeopleMap, mStream.people);
  }

  MultiStreamPeopleFramingLayout& mEngine;
  Stream& mStream;
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
    changed |= mStreams[i].current != nullptr;
  }
  if (mStreams.size() != ids.size()) {
    mStreams.resize(ids.size());
    mAssignment.resize(ids.size());
  }
  for (std::size_t i = 0; i < ids.size(); ++i) {
    Stream& stream = mStreams[i];
    if (std::exchange(stream.id, ids[i]) == ids[i]) {
      continue;
    }
    for (std::shared_ptr<Layout>* const layout : {&stream.current, &stream.next}) {
      if (*layout != nullptr) {
        updateLayoutWithStreamInfo(*layout, ids[i]);
      }
    }
    changed |= stream.current != nullptr;
  }
  return changed;
}

const std::set<std::int64_t>& MultiStreamPeopleFramingLayout::peopleOnScreen(const Stream& stream) {
  static const std::set<std::int64_t> kNobody;
  if (stream.current == nullptr || stream.current->frames.empty()) {
    return kNobody;
  }
  const Frame& frame = stream.current->frames.front();
  return frame.frameType == FramingType::GROUP ? stream.group : frame.fynHeads;
}

void MultiStreamPeopleFramingLayout::assignPeople(const MLData& data) {
  for (std::size_t i = 0; i < mStreams.size(); ++i) {
    mAssignment.setShown(i, peopleOnScreen(mStreams[i]));
  }
  const auto camId = static_cast<std::uint32_t>(FynCamerasConfig::get().fynCamId);
  mInputFaults.report(data, camId, getTag());
  const std::vector<std::vector<Seat>>& people =
      mAssignment.assign(findSeats(data, camId), PrConfig::get().newPfFeatureEnabled);
  for (std::size_t i = 0; i < mStreams.size(); ++i) {
    mStreams[i].people.clear();
    for (const Seat& seat : people[i]) {
      mStreams[i].people.emplace(seat.person->id, seat.person);
    }
  }
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
    return isTimerRunning(stream.current.get(), stream.next.get());
  });
}

std::vector<std::shared_ptr<Layout>> MultiStreamPeopleFramingLayout::getFinalLayoutPtrs() const {
  std::vector<std::shared_ptr<Layout>> layouts;
  layouts.reserve(mStreams.size());
  for (const Stream& stream : mStreams) {
    layouts.push_back(stream.current);
  }
  return layouts;
}

std::vector<std::shared_ptr<Layout>> MultiStreamPeopleFramingLayout::getNextLayoutPtrs() const {
  std::vector<std::shared_ptr<Layout>> layouts;
  layouts.reserve(mStreams.size());
  for (const Stream& stream : mStreams) {
    layouts.push_back(stream.next);
  }
  return layouts;
}

// ---- One stream's picture ----

std::shared_ptr<Layout> MultiStreamPeopleFramingLayout::createLayout(const std::shared_ptr<MLData>& mlData) {
  std::vector<std::shared_ptr<FynHead>> people;
  people.reserve(mPeopleMap.size());
  for (const auto& [id, person] : mPeopleMap) {
    people.push_back(person);
  }
  auto layout = std::make_shared<Layout>();
  layout->layoutType = people.empty()       ? FramingType::ROOM
                       : people.size() == 1 ? FramingType::HEAD
                                            : FramingType::PROXIMITY;
  constructGroupLayout(people, layout, static_cast<std::uint32_t>(FynCamerasConfig::get().fynCamId));
  layout->frameNumber = mlData->frameNumber;
  layout->faceCount = static_cast<std::int32_t>(people.size());
  fillPositionRect(layout);
  if (!people.empty() && !canShow(*this, layout->frames.front())) {
    layout->layoutType = FramingType::GROUP;
    layout->frames.front().frameType = FramingType::GROUP;
    layout->frames.front().frameLayout = kFrameLayoutNone;
  }
  countFrame(*layout);
  return layout;
}

void MultiStreamPeopleFramingLayout::fillPositionRect(std::shared_ptr<Layout>& layout) {
  // No tiles: every stream is a picture of its own.
  BaseLayout::fillPositionRect(layout);  // NOLINT(bugprone-parent-virtual-call)
}

void MultiStreamPeopleFramingLayout::calculateGroupFraming(Frame& frame) {
  PeopleFramingLayout::calculateGroupFraming(frame);
  if (mSelected != nullptr) {
    mSelected->group.clear();
    for (const auto& [id, person] : mPeopleMap) {
      mSelected->group.insert(id);
    }
  }
}

bool MultiStreamPeopleFramingLayout::updateCurrentTimer() {
  return inEveryStream([&] {
    bool reframe = false;
    for (std::size_t i = 0; mCurLayout != nullptr && i < mCurLayout->frames.size(); ++i) {
      Frame& frame = mCurLayout->frames[i];
      reframe |= updateFrameTimer(i, frame, positionOf(frame));
    }
    return reframe;
  });
}

// The people of a stream stay together whether they are neighbours or not, so their frame is watched always;
// and it follows them when they move closer, because nothing else would ever bring the camera nearer again.
HeadPosition MultiStreamPeopleFramingLayout::positionOf(const Frame& frame) {
  if (frame.frameType != FramingType::PROXIMITY) {
    return getCurrentHeadPosition(frame);
  }
  const HeadPosition position = getProximityHeadPosition(frame);
  Rect box;
  if (position != HeadPosition::CENTER || !constructBoundingBox(frame, box, false)) {
    return position;
  }
  return isGFMoveClose(frame.detectionBoundary, getBaseRectForRuleofThirdsFrame(frame, box))
             ? HeadPosition::GROUP_MOVE_CLOSE
             : HeadPosition::CENTER;
}

}  // namespace fyn::productionrules
