#include "layouts/speaker/HeadSmoother.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>
#include <vector>

#include "layouts/people/HeadsInView.h"

namespace fyn::productionrules {

namespace {

constexpr double kTimeConstantMs = 250.0;

// A step of more than this, in head heights, is a move and no trembling: at least half of it is made at once.
constexpr double kJump = 0.6;
constexpr double kShareOfJump = 0.5;

/** The person with another box in place of that of `head`. */
std::shared_ptr<FynHead> withBox(const FynHead& person, const Head& head, const Rect& box) {
  auto copy = std::make_shared<FynHead>(person);
  for (auto& [camId, each] : copy->mCamIdAssocHeadMap) {
    if (each.get() == &head) {
      each = std::make_shared<Head>(head);
      each->bbox = box;
    }
  }
  return copy;
}

}  // namespace

std::shared_ptr<MLData> HeadSmoother::smooth(const std::shared_ptr<MLData>& data, std::uint32_t camId,
                                             std::uint32_t now) {
  const HeadsInView heads = headsToFollow(camId);
  std::vector<std::shared_ptr<FynHead>> persons = data->getHeads();
  bool isChanged = false;
  for (std::shared_ptr<FynHead>& person : persons) {
    const Head* const head = heads.find(*person);
    if (head == nullptr) {
      continue;
    }
    const Rect& box = head->bbox;
    const auto [entry, isNew] = mTracks.try_emplace(person->id, Track{SmoothBox(box), now});
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
      person = withBox(*person, *head, smooth);
      isChanged = true;
    }
  }
  for (auto track = mTracks.begin(); track != mTracks.end();) {
    track = std::exchange(track->second.isSeen, false) ? std::next(track) : mTracks.erase(track);
  }
  if (!isChanged) {
    return data;
  }
  auto result = std::make_shared<MLData>(*data);
  result->heads = std::move(persons);
  return result;
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
