#include "layouts/people/PeoplePresence.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "config/PrConfig.h"
#include "geometry/RectMath.h"
#include "layouts/people/MissedHeads.h"
#include "model/FynCamerasConfig.h"

namespace fyn::productionrules {

namespace {

// Times in milliseconds. Measured on tracks of real detectors and on meetings with their noise.
constexpr std::uint32_t kNewcomerMs = 500;
constexpr std::uint32_t kFlashMs = 300;
constexpr std::uint32_t kLeastMissedMs = 500;
constexpr std::uint32_t kMissedWalkerMs = 1000;
constexpr std::uint32_t kKnownAfterMs = 5000;

// A newcomer is in at least three of five results.
constexpr std::uint64_t kSeenOf = 5;
constexpr std::uint64_t kSeen = 3;

// Of the time present, for who was not there from the beginning: false boxes that live long.
constexpr double kMissedShare = 0.3;

// Head widths from the border, and a second towards the middle.
constexpr double kBottomBorder = 0.25;
constexpr double kInward = 0.25;

// Whether the head stands at a border through which one leaves, and does not come in.
bool isLeaving(const HeadPath& path, const Dimension& image) {
  const Rect& box = path.latest();
  const double width = static_cast<double>(box.right) - box.left;
  const Velocity velocity = path.velocity();
  const double inward = kInward * width;
  const bool atLeft = box.left < kSideBorder * width && velocity.x < inward;
  const bool atRight = box.right > image.width - kSideBorder * width && velocity.x > -inward;
  const bool atBottom = box.bottom > image.height - kBottomBorder * width && velocity.y > -inward;
  return atLeft || atRight || atBottom;
}

// Whether a newcomer may be a box where nobody is.
bool isWary() {
  return PrConfig::get().steadyFramingEnabled;
}

}  // namespace

std::shared_ptr<MLData> PeoplePresence::update(const std::shared_ptr<MLData>& reported, std::uint32_t now,
                                               bool isRestAsked) {
  if (++mResults == 1 && !reported->getHeads().empty()) {
    mFalseBoxes.begin(now);
  }
  mIsRestAsked = isRestAsked;
  mRenamed.clear();
  std::shared_ptr<MLData> data = isWary() ? mSplit.rejoin(reported, now, mRenamed) : reported;
  const std::vector<std::shared_ptr<FynHead>>& seen = data->getHeads();
  bool areKnown = true;
  for (const std::shared_ptr<FynHead>& person : seen) {
    areKnown &= note(person, now);
  }
  if (!areKnown) {
    findAgain(*data, now);
  }
  forgetMissed(now);

  const auto doesCount = [this](const std::shared_ptr<FynHead>& person) {
    return mSightings.at(person->id).counts;
  };
  const auto isMissed = [this](const Sightings::value_type& each) {
    return each.second.counts && each.second.latestResult != mResults;
  };
  if ((areKnown || std::all_of(seen.begin(), seen.end(), doesCount)) &&
      std::none_of(mSightings.begin(), mSightings.end(), isMissed)) {
    return data;
  }
  std::vector<std::shared_ptr<FynHead>> present;
  std::copy_if(seen.begin(), seen.end(), std::back_inserter(present), doesCount);
  for (const Sightings::value_type& each : mSightings) {
    if (isMissed(each)) {
      present.push_back(each.second.person);
    }
  }
  auto result = std::make_shared<MLData>();
  result->timestamp = data->timestamp;
  result->frameNumber = data->frameNumber;
  result->setHeads(present);
  return result;
}

bool PeoplePresence::note(const std::shared_ptr<FynHead>& person, std::uint32_t now) {
  const auto [entry, isNew] = mSightings.try_emplace(person->id);
  Sighting& sighting = entry->second;
  // Of two with one id the first counts.
  if (!isNew && sighting.latestResult == mResults) {
    return sighting.counts;
  }
  if (isNew) {
    sighting.first = now;
    sighting.firstResult = mResults;
    sighting.counts = sighting.wasThereFirst = mResults == 1;
  }
  sighting.person = person;
  sighting.latest = now;
  sighting.latestResult = mResults;
  ++sighting.seen;
  follow(sighting, now);
  sighting.counts = sighting.counts || isBelieved(sighting, now);
  return sighting.counts;
}

bool PeoplePresence::isBelieved(const Sighting& sighting, std::uint32_t now) const {
  // In an empty room a box where nobody is does no harm, and a person must not wait.
  const bool isDoubted = isWary() && !sighting.hasWalked && isAnybodyThere();
  const std::uint32_t leastMs = std::max(kNewcomerMs, isDoubted ? mFalseBoxes.doubtMs(now) : 0);
  return now - sighting.first >= leastMs &&
         sighting.seen * kSeenOf >= (mResults - sighting.firstResult + 1) * kSeen;
}

bool PeoplePresence::isAnybodyThere() const {
  return std::any_of(mSightings.begin(), mSightings.end(),
                     [](const auto& each) { return each.second.counts; });
}

void PeoplePresence::follow(Sighting& sighting, std::uint32_t now) const {
  for (const auto& [camId, head] : sighting.person->mCamIdAssocHeadMap) {
    if (isZeroRect(head->bbox)) {
      continue;
    }
    HeadPath& path = sighting.paths[camId];
    path.add(now, head->bbox, mIsRestAsked);
    if (path.isWalk()) {
      sighting.hasWalked = true;
      sighting.latestWalk = now;
    }
  }
  for (auto path = sighting.paths.begin(); path != sighting.paths.end();) {
    path = path->second.latestAt() == now ? std::next(path) : sighting.paths.erase(path);
  }
}

void PeoplePresence::findAgain(const MLData& data, std::uint32_t now) {
  for (const std::shared_ptr<FynHead>& person : data.getHeads()) {
    Sighting& newcomer = mSightings.at(person->id);
    if (newcomer.counts || takeBack(newcomer, now)) {
      continue;
    }
    const auto missed = findMissed(newcomer);
    if (missed == mSightings.end()) {
      comeBack(newcomer, now);
      continue;
    }
    if (missed->second.counts) {
      mRenamed.push_back({missed->second.person, person});
    }
    inherit(newcomer, missed->second);
    newcomer.formerId = missed->first;
    mSightings.erase(missed);
  }
}

// Somebody who was given up, at the same place or by the same number: a picture that still shows the place
// needs no other one.
void PeoplePresence::comeBack(Sighting& newcomer, std::uint32_t now) {
  const std::shared_ptr<FynHead> before = isWary() ? mKnownPlaces.take(*newcomer.person, now) : nullptr;
  newcomer.counts = newcomer.wasThereFirst = before != nullptr;
  if (before != nullptr && mSightings.count(before->id) == 0) {
    mRenamed.push_back({before, newcomer.person});
  }
}

// Whoever was taken for the returned person, such as a box where nobody is that came up beside the place, has
// to prove anew to be somebody.
bool PeoplePresence::takeBack(Sighting& returned, std::uint32_t now) {
  const auto other = std::find_if(mSightings.begin(), mSightings.end(), [&](const auto& each) {
    return each.second.formerId == returned.person->id &&
           sharedPlace(*each.second.person, *returned.person) > 0;
  });
  if (other == mSightings.end()) {
    return false;
  }
  const Sighting stranger = other->second;
  mSightings.erase(other);
  if (stranger.counts) {
    mRenamed.push_back({stranger.person, returned.person});
  }
  inherit(returned, stranger);
  if (stranger.latestResult == mResults) {
    note(stranger.person, now);
  }
  return true;
}

// Who is not in the latest result, and whose last place is most that of the newcomer.
PeoplePresence::Sightings::iterator PeoplePresence::findMissed(const Sighting& newcomer) {
  auto best = mSightings.end();
  std::pair<bool, double> most;
  for (auto each = mSightings.begin(); each != mSightings.end(); ++each) {
    const Sighting& missed = each->second;
    // Who has been seen at once with the missed person is another one.
    if (missed.latestResult >= newcomer.firstResult || (!missed.counts && !isWary())) {
      continue;
    }
    const std::pair<bool, double> share(missed.counts, sharedPlace(*missed.person, *newcomer.person));
    if (share.second >= kSamePlace && share > most) {
      best = each;
      most = share;
    }
  }
  return best;
}

void PeoplePresence::inherit(Sighting& sighting, const Sighting& before) {
  sighting.counts = before.counts;
  sighting.first = std::min(sighting.first, before.first);
  sighting.firstResult = std::min(sighting.firstResult, before.firstResult);
  sighting.seen += before.seen;
  sighting.wasThereFirst = before.wasThereFirst;
  if (!sighting.hasWalked) {
    sighting.hasWalked = before.hasWalked;
    sighting.latestWalk = before.latestWalk;
  }
}

void PeoplePresence::forgetMissed(std::uint32_t now) {
  for (auto each = mSightings.begin(); each != mSightings.end();) {
    const Sighting& sighting = each->second;
    const bool isForgotten = sighting.latestResult != mResults && now - sighting.latest > holdMs(sighting);
    const bool isKnown =
        sighting.wasThereFirst || sighting.hasWalked || sighting.latest - sighting.first >= kKnownAfterMs;
    if (isForgotten && sighting.counts && isKnown) {
      mKnownPlaces.add(sighting.person, now);
    }
    if (isForgotten && !sighting.hasWalked && !sighting.wasThereFirst) {
      mFalseBoxes.add(sighting.latest - sighting.first, now);
    }
    each = isForgotten ? mSightings.erase(each) : std::next(each);
  }
}

std::uint32_t PeoplePresence::holdMs(const Sighting& sighting) {
  if (!sighting.counts && (!isWary() || sighting.latest - sighting.first < kNewcomerMs)) {
    return kFlashMs;
  }
  std::uint32_t hold = kMissedMs;
  if (!sighting.wasThereFirst) {
    const double earned = kMissedShare * (sighting.latest - sighting.first);
    hold = std::min(hold, std::max(kLeastMissedMs, static_cast<std::uint32_t>(earned)));
  }
  if (sighting.hasWalked && sighting.latest - sighting.latestWalk <= kMissedWalkerMs) {
    hold = std::min(hold, kMissedWalkerMs);
  }
  const bool leaves =
      !sighting.paths.empty() &&
      std::all_of(sighting.paths.begin(), sighting.paths.end(), [](const auto& path) {
        return isLeaving(path.second, getCameraLensModelDimension(static_cast<int>(path.first)));
      });
  return leaves ? std::min(hold, kMissedAtBorderMs) : hold;
}

bool PeoplePresence::isMissed(std::int32_t personId) const {
  const auto sighting = mSightings.find(personId);
  return sighting != mSightings.end() && sighting->second.latestResult != mResults;
}

std::uint32_t PeoplePresence::missedMs(std::int32_t personId, std::uint32_t now) const {
  const auto sighting = mSightings.find(personId);
  return sighting != mSightings.end() ? now - sighting->second.latest : 0;
}

bool PeoplePresence::hasWalked(std::int32_t personId, std::uint32_t withinMs, std::uint32_t now) const {
  const auto sighting = mSightings.find(personId);
  return sighting != mSightings.end() && sighting->second.hasWalked &&
         now - sighting->second.latestWalk <= withinMs;
}

bool PeoplePresence::hasJustCome(std::int32_t personId, std::uint32_t withinMs, std::uint32_t now) const {
  const auto sighting = mSightings.find(personId);
  return sighting != mSightings.end() && !sighting->second.wasThereFirst &&
         now - sighting->second.first < withinMs;
}

const HeadPath* PeoplePresence::findPath(std::int32_t personId, std::uint32_t camId) const {
  const auto sighting = mSightings.find(personId);
  if (sighting == mSightings.end()) {
    return nullptr;
  }
  const auto path = sighting->second.paths.find(camId);
  return path != sighting->second.paths.end() ? &path->second : nullptr;
}

Velocity PeoplePresence::velocity(std::int32_t personId, std::uint32_t camId) const {
  const HeadPath* const path = findPath(personId, camId);
  return path != nullptr ? path->velocity() : Velocity{};
}

Rect PeoplePresence::restingBox(std::int32_t personId, std::uint32_t camId, const Rect& box) const {
  const HeadPath* const path = findPath(personId, camId);
  return path != nullptr ? path->resting() : box;
}

Rect PeoplePresence::placeAhead(std::int32_t personId, std::uint32_t camId, const Rect& box,
                                double seconds) const {
  const Dimension image = getCameraLensModelDimension(static_cast<int>(camId));
  const Velocity pace = velocity(personId, camId);
  const auto moved = [seconds](std::int32_t side, double perSecond, std::int32_t size) {
    return static_cast<std::int32_t>(std::clamp(side + perSecond * seconds, 0.0, static_cast<double>(size)));
  };
  return {moved(box.left, pace.x, image.width), moved(box.top, pace.y, image.height),
          moved(box.right, pace.x, image.width), moved(box.bottom, pace.y, image.height)};
}

void PeoplePresence::forget() {
  *this = PeoplePresence();
}

}  // namespace fyn::productionrules
