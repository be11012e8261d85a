#include "layouts/speaker/HeadSmoother.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

namespace fyn::productionrules {

namespace {

constexpr double kTimeConstantMs = 250.0;

// A step of more than this, in head heights, is a move and no trembling: at least half of it is made at once.
constexpr double kJump = 0.6;
constexpr double kShareOfJump = 0.5;

}  // namespace

void HeadSmoother::smooth(MLData& data, const HeadsInView& heads, std::uint32_t now) {
  for (std::shared_ptr<FynHead>& person : data.heads) {
    const Head* const head = heads.find(*person);
    if (head == nullptr) {
      continue;
    }
    const Rect& box = head->bbox;
    const auto [entry, isNew] = mTracks.try_emplace(person->id, box, now);
    Track& track = entry->second;
    // Of two with one id the first counts.
    if (std::exchange(track.isSeen, true)) {
      continue;
    }
    if (!isNew) {
      follow(track, box, now);
    }
    const Rect smooth = track.box.rounded();
    if (!(smooth == box)) {
      std::swap(track.latest, track.before);
      person = track.latest.make(*person, *head, smooth);
    }
  }
  for (auto track = mTracks.begin(); track != mTracks.end();) {
    track = std::exchange(track->second.isSeen, false) ? std::next(track) : mTracks.erase(track);
  }
}

std::shared_ptr<FynHead> HeadSmoother::Copy::make(const FynHead& original, const Head& head,
                                                  const Rect& box) {
  if (mPerson.use_count() == 1) {
    *mPerson = original;
  } else {
    mPerson = std::make_shared<FynHead>(original);
  }
  if (mHead.use_count() == 1) {
    *mHead = head;
  } else {
    mHead = std::make_shared<Head>(head);
  }
  mHead->bbox = box;
  for (auto& [camId, each] : mPerson->mCamIdAssocHeadMap) {
    if (each.get() == &head) {
      each = mHead;
    }
  }
  return mPerson;
}

void HeadSmoother::follow(Track& track, const Rect& box, std::uint32_t now) {
  const double height = double{1} * box.bottom - box.top;
  // Mostly the same for all.
  if (now - track.at != mPassed) {
    mPassed = now - track.at;
    mShare = 1 - std::exp(-static_cast<double>(mPassed) / kTimeConstantMs);
  }
  double share = mShare;
  if (track.box.distanceTo(box) > kJump * height) {
    share = std::max(share, kShareOfJump);
  }
  track.box.follow(box, share);
  track.at = now;
}

}  // namespace fyn::productionrules
