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

void HeadPath::add(std::uint32_t now, const Rect& box) {
  rest(now, box);
  const auto isRecent = [now](const Sight& sight) { return now - sight.at <= kPathMs; };
  mSights.erase(mSights.begin(), std::find_if(mSights.begin(), mSights.end(), isRecent));
  mSights.push_back({now, box});
}

bool HeadPath::isWalk() const {
  const std::uint32_t begin = mSights.front().at;
  const std::uint32_t end = mSights.back().at;
  if (end - begin < kLeastMs) {
    return false;
  }
  const Sight* const first = mSights.data();
  const Sight* const last = first + mSights.size();
  const Mean before =
      mean(first, std::find_if(first, last, [=](const Sight& sight) { return sight.at - begin > kEndMs; }));
  const Mean after =
      mean(std::find_if(first, last, [=](const Sight& sight) { return end - sight.at <= kEndMs; }), last);
  return std::hypot(after.x - before.x, after.y - before.y) > kHeadWidthsOfWalk * after.width ||
         std::abs(after.height - before.height) > kGrowthOfWalk * before.height;
}

Velocity HeadPath::velocity() const {
  const std::uint32_t end = mSights.back().at;
  const auto first = std::find_if(mSights.begin(), mSights.end(),
                                  [end](const Sight& sight) { return end - sight.at <= kVelocityMs; });
  const auto count = static_cast<double>(mSights.end() - first);
  double t = 0;
  double x = 0;
  double y = 0;
  double tt = 0;
  double tx = 0;
  double ty = 0;
  for (auto sight = first; sight != mSights.end(); ++sight) {
    const double at = -static_cast<double>(end - sight->at) / kMsPerSecond;
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

HeadPath::Mean HeadPath::mean(const Sight* first, const Sight* end) {
  Mean mean;
  for (const Sight* sight = first; sight != end; ++sight) {
    mean.x += middle(sight->box.left, sight->box.right);
    mean.y += middle(sight->box.top, sight->box.bottom);
    mean.width += extent(sight->box.left, sight->box.right);
    mean.height += extent(sight->box.top, sight->box.bottom);
  }
  const auto count = static_cast<double>(end - first);
  return {mean.x / count, mean.y / count, mean.width / count, mean.height / count};
}

}  // namespace fyn::productionrules
