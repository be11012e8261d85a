#include "tools/feed/DetectorNoise.h"

#include <algorithm>
#include <cmath>

namespace fyn::productionrules {

namespace {

/** Who is gone for longer has left. */
constexpr std::int64_t kGoneMs = 5000;
constexpr std::int64_t kPlaceMs = 1000;
/** Within a longer time a head may really move. */
constexpr std::int64_t kJitterMs = 100;
/** What lives for fewer results and does not come back was no head. */
constexpr std::int64_t kShortLife = 15;
/** Of the width of the head, within a second. */
constexpr double kWalk = 0.75;
constexpr double kSamePlace = 0.5;

double width(const Rect& box) {
  return static_cast<double>(box.right) - box.left;
}

/** Between the centres, in widths of the first. */
double distance(const Rect& from, const Rect& to) {
  const double x = (static_cast<double>(to.left) + to.right - from.left - from.right) / 2;
  const double y = (static_cast<double>(to.top) + to.bottom - from.top - from.bottom) / 2;
  return std::hypot(x, y) / width(from);
}

double percent(std::int64_t part, std::int64_t whole) {
  return whole > 0 ? 100.0 * static_cast<double>(part) / static_cast<double>(whole) : 0;
}

}  // namespace

void DetectorNoise::see(std::int64_t t, std::int32_t camera, std::int32_t person, const Rect& box) {
  ++mSeen;
  const Key key{camera, person};
  const auto [track, isNew] = mTracks.try_emplace(key);
  if (isNew) {
    track->second = {box, mResult, t, 1, box, t, false};
    mNew.push_back(key);
  } else if (track->second.lastResult != mResult) {
    follow(track->second, box, t);
  }
}

void DetectorNoise::follow(Track& track, const Rect& box, std::int64_t t) {
  if (const std::int64_t gap = mResult - track.lastResult - 1; gap > 0) {
    missed(gap);
  } else if (!track.walks && t - track.lastAt <= kJitterMs) {
    constexpr double kHundredths = 10'000;
    // A box that jumps further is not jitter.
    mJitter.add(std::llround(std::min(1.0, distance(track.box, box)) * kHundredths));
  }
  if (t - track.placeAt >= kPlaceMs) {
    track.walks = distance(track.placeThen, box) > kWalk;
    (track.walks ? mWalkedMs : mStayedMs) += t - track.placeAt;
    track.placeThen = box;
    track.placeAt = t;
  }
  track.box = box;
  track.lastResult = mResult;
  track.lastAt = t;
  ++track.boxes;
}

void DetectorNoise::missed(std::int64_t results) {
  mMissed += results;
  mDropOuts.add(results);
}

void DetectorNoise::endResult(std::int64_t t) {
  continueTracks();
  forgetTracks(t);
  ++mResult;
}

// Whoever is new where somebody has just vanished is that person under another number.
void DetectorNoise::continueTracks() {
  for (const Key& key : mNew) {
    Track& track = mTracks.at(key);
    const auto before = std::find_if(mTracks.begin(), mTracks.end(), [&](const auto& entry) {
      return entry.first.first == key.first && entry.second.lastResult < mResult &&
             entry.second.boxes >= kShortLife && distance(entry.second.box, track.box) < kSamePlace;
    });
    if (before != mTracks.end()) {
      ++mNewNumbers;
      if (const std::int64_t gap = mResult - before->second.lastResult - 1; gap > 0) {
        missed(gap);
      }
      track.boxes += before->second.boxes;
      mTracks.erase(before);
    }
  }
  mNew.clear();
}

void DetectorNoise::forgetTracks(std::int64_t t) {
  for (auto track = mTracks.begin(); track != mTracks.end();) {
    if (t - track->second.lastAt < kGoneMs) {
      ++track;
      continue;
    }
    if (track->second.boxes < kShortLife) {
      mFalseBoxes += track->second.boxes;
    }
    track = mTracks.erase(track);
  }
}

DetectorNoise::Figures DetectorNoise::figures() const {
  Figures figures;
  figures.missedPercent = percent(mMissed, mSeen + mMissed);
  figures.dropOut90 = mDropOuts.percentile(90).value_or(0);
  figures.newNumbers = mNewNumbers;
  figures.falsePercent = percent(mFalseBoxes, mSeen);
  figures.jitterPercent = static_cast<double>(mJitter.percentile(50).value_or(0)) / 100;
  figures.jitter95Percent = static_cast<double>(mJitter.percentile(95).value_or(0)) / 100;
  figures.walkingPercent = percent(mWalkedMs, mWalkedMs + mStayedMs);
  return figures;
}

}  // namespace fyn::productionrules
