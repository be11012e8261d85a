// The part of SpeakerFramingLayout that computes what a frame shows, and when it is to be computed anew.
#include <algorithm>

#include "layouts/cycle/ZoomLimit.h"
#include "layouts/people/HeadsInView.h"
#include "layouts/people/ViewGrowth.h"
#include "layouts/speaker/MemberFrame.h"
#include "layouts/speaker/SpeakerFramingLayout.h"
#include "model/FynCamerasConfig.h"

namespace fyn::productionrules {

namespace {

// How far ahead of a walker the picture is placed.
constexpr double kAheadSeconds = 3.0;

}  // namespace

unsigned SpeakerFramingLayout::getMaxScaleFactor() {
  return speakerZoomLimit();
}

bool SpeakerFramingLayout::updateCurrentTimer() {
  if (mState.mCurLayout != nullptr) {
    for (const Frame& frame : mState.mCurLayout->frames) {
      if (isOfSpeaker(frame.frameType)) {
        // Such a frame is placed around whoever is in view: nothing else would tell who is missing.
        mHeadFaults.report(frame, mState.people);
      }
    }
  }
  return BaseLayout::updateCurrentTimer();
}

// ---- Members ----

void SpeakerFramingLayout::updateFrameView(Frame& frame) {
  if (isOfSpeaker(frame.frameType)) {
    calculateGroupFraming(frame);
  } else {
    BaseLayout::updateFrameView(frame);
  }
}

PeopleMap& SpeakerFramingLayout::getHeadMapForGroup(const Frame& frame) {
  if (frame.frameType != FramingType::SUBSET_SPEAKER) {
    return BaseLayout::getHeadMapForGroup(frame);
  }
  mMembers.clear();
  for (const std::int64_t id : frame.fynHeads) {
    const auto person = mState.people.find(id);
    if (person != mState.people.end()) {
      mMembers.insert(*person);
    }
  }
  return mMembers;
}

// ---- Everybody ----

std::vector<Rect> SpeakerFramingLayout::getGroupHeadBounds(const Frame& frame) {
  const HeadsInView heads = headsToFollow(frame.fynCamId);
  std::vector<Rect> bounds;
  for (const auto& [id, person] : getHeadMapForGroup(frame)) {
    if (const Head* const head = heads.find(*person)) {
      bounds.push_back(head->bbox);
    }
  }
  if (frame.frameType != FramingType::GROUP) {
    return bounds;
  }
  for (const std::shared_ptr<FynHead>& walker : mWalkers) {
    if (const Head* const head = heads.find(*walker)) {
      bounds.push_back(mMemory.presence.placeAhead(walker->id, frame.fynCamId, head->bbox, kAheadSeconds));
    }
  }
  return bounds;
}

void SpeakerFramingLayout::calculateGroupFraming(Frame& frame) {
  if (isOfSpeaker(frame.frameType)) {
    // The members stay those of the frame; only the group of everybody takes in who has come.
    placeMembers(frame, mState.people);
    return;
  }
  BaseLayout::calculateGroupFraming(frame);
  if (!mWalkers.empty()) {
    const Dimension image = getCameraLensModelDimension(static_cast<int>(frame.fynCamId));
    frame.source = grownTo(frame.source, {image.width / 2, image.height / 2}, image);
  }
}

HeadPosition SpeakerFramingLayout::getCurrentHeadPosition(const Frame& frame) {
  return isOfSpeaker(frame.frameType) ? getGroupHeadPosition(frame)
                                      : BaseLayout::getCurrentHeadPosition(frame);
}

HeadPosition SpeakerFramingLayout::getGroupHeadPosition(const Frame& frame) {
  if (isOfSpeaker(frame.frameType)) {
    return memberPosition(frame, mState.people);
  }
  if (mWalkers.empty()) {
    return BaseLayout::getGroupHeadPosition(frame);
  }
  // A walker is followed before being out of the picture, and the picture does not close in meanwhile.
  const HeadsInView heads = headsToFollow(frame.fynCamId);
  const std::vector<Rect> bounds = getGroupHeadBounds(frame);
  const bool leaves = std::any_of(bounds.begin(), bounds.end(),
                                  [&](const Rect& head) { return !heads.isWhole(head, frame.source); });
  return leaves ? HeadPosition::GROUP_HEAD_OUTSIDE : HeadPosition::CENTER;
}

}  // namespace fyn::productionrules
