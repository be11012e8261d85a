#include "layouts/people/HeadPath.h"

#include <algorithm>
#include <cmath>

namespace fyn::productionrules {

namespace {

// How much of the path counts, how much of it is compared with its other end, and how long it must be, in
// milliseconds.
constexpr std::uint32_t kPathMs = 1500;
constexpr std::uint32_t kEndMs = 300;
constexpr std::uint32_t kLeastMs = 400;

// What no longer counts is dropped so many at a time.
constexpr std::size_t kManySights = 32;

constexpr std::uint32_t kVelocityMs = 600;
constexpr double kMsPerSecond = 1000.0;

// From 2 to 20 s all are better than none. Of the head's height: a person who has changed seats.
constexpr double kRestMs = 4000;
constexpr double kElsewhere = 0.8;

// From 1.5 to 3 all work; one head width takes people who shift in their chairs for walkers.
constexpr double kHeadWidthsOfWalk = 2.0;
constexpr double kGrowthOfWalk = 0.25;

double middle(std::int32_t low, std::int32_t high) {
  return (static_cast<double>(low) + high) / 2;
}

double extent(std::int32_t low, std::int32_t high) {
  return static_cast<double>(high) - low;
}

}  // namespace

void HeadPath::rest(std::uint32_t now, const Rect& box) {
  if (!mResting || mResting->distanceTo(box) > kElsewhere * extent(box.top, box.bottom)) {
    mResting.emplace(box);
    mRestsSince = now;
    return;
  }
  const double passed = now - latestAt();
  const double rested = now - mRestsSince;
  mResting->follow(box, std::max(1 - std::exp(-passed / kRestMs), rested > 0 ? passed / rested : 0));
}

void HeadPath::add(std::uint32_t now, const Rect& box, bool isRestAsked) {
  if (isRestAsked) {
    rest(now, box);
  } else {
    mResting.reset();
  }
  while (first() != end() && now - first()->at > kPathMs) {
    ++mFirst;
  }
  if (mFirst >= kManySights) {
    mSights.erase(mSights.begin(), mSights.begin() + static_cast<std::ptrdiff_t>(mFirst));
    mAfterFirstPart -= std::min(mAfterFirstPart, mFirst);
    mLastPart -= std::min(mLastPart, mFirst);
    mFirst = 0;
  }
  mSights.push_back({now, box, mSights.empty() ? Sums() : sumsWith(mSights.back())});
  mAfterFirstPart = std::max(mAfterFirstPart, mFirst);
  while (mAfterFirstPart < mSights.size() && mSights[mAfterFirstPart].at - first()->at <= kEndMs) {
    ++mAfterFirstPart;
  }
  while (now - mSights[mLastPart].at > kEndMs) {
    ++mLastPart;
  }
}

bool HeadPath::isWalk() const {
  if (latestAt() - first()->at < kLeastMs) {
    return false;
  }
  const Sight* const afterFirst = mSights.data() + mAfterFirstPart;
  const Sight* const last = mSights.data() + mLastPart;
  const Mean before = mean(first()->before, afterFirst->before, afterFirst - first());
  const Mean after = mean(last->before, sumsWith(mSights.back()), end() - last);
  return std::hypot(after.x - before.x, after.y - before.y) > kHeadWidthsOfWalk * after.width ||
         std::abs(after.height - before.height) > kGrowthOfWalk * before.height;
}

Velocity HeadPath::velocity() const {
  const std::uint32_t latest = latestAt();
  const Sight* const begin =
      std::find_if(first(), end(), [latest](const Sight& sight) { return latest - sight.at <= kVelocityMs; });
  const auto count = static_cast<double>(end() - begin);
  double t = 0;
  double x = 0;
  double y = 0;
  double tt = 0;
  double tx = 0;
  double ty = 0;
  for (const Sight* sight = begin; sight != end(); ++sight) {
    const double at = -static_cast<double>(latest - sight->at) / kMsPerSecond;
    const double atX = middle(sight->box.left, sight->box.right);
    const double atY = middle(sight->box.top, sight->box.bottom);
    t += at;
    x += atX;
    y += atY;
    tt += at * at;
    tx += at * atX;
    ty += at * atY;
  }
  const double spread = count * tt - t * t;
  if (spread <= 0) {
    return {};
  }
  return {(count * tx - t * x) / spread, (count * ty - t * y) / spread};
}

HeadPath::Sums HeadPath::sumsWith(const Sight& sight) {
  const Sums& before = sight.before;
  const Rect& box = sight.box;
  return {before.left + box.left, before.top + box.top, before.right + box.right, before.bottom + box.bottom};
}

HeadPath::Mean HeadPath::mean(const Sums& before, const Sums& with, std::ptrdiff_t count) {
  const std::int64_t left = with.left - before.left;
  const std::int64_t top = with.top - before.top;
  const std::int64_t right = with.right - before.right;
  const std::int64_t bottom = with.bottom - before.bottom;
  const auto share = [count](std::int64_t sum) {
    return static_cast<double>(sum) / static_cast<double>(count);
  };
  return {share(left + right) / 2, share(top + bottom) / 2, share(right - left), share(bottom - top)};
}

}  // namespace fyn::productionrules
