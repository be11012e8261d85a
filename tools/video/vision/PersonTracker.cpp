#include "tools/video/vision/PersonTracker.h"

#include <algorithm>
#include <cmath>

#include "model/Geometry.h"
#include "tools/video/vision/Assignment.h"

namespace fyn::productionrules::video {

namespace {

double overlap(const cv::Rect2d& a, const cv::Rect2d& b) {
  const double common = (a & b).area();
  const double all = a.area() + b.area() - common;
  return all > 0 ? common / all : 0;
}

cv::Point2d centre(const cv::Rect2d& box) {
  return (box.tl() + box.br()) / 2.0;
}

bool crossesSide(const cv::Rect2d& box) {
  return box.x < 0 || box.x + box.width > kOutputSize.width;
}

/** Whether a camera is certain enough that this is a person. */
bool beginsPerson(const Observation& seen, const TrackerOptions& options) {
  return std::any_of(seen.views.begin(), seen.views.end(), [&](const Observation::View& view) {
    const Detection& head = view.detection;
    return head.score >= (crossesSide(head.box) ? options.scoreToBeginAtSide : options.scoreToBegin);
  });
}

bool crossesEdge(const Observation::View& view) {
  const cv::Rect2d& box = view.detection.box;
  return (box & cv::Rect2d(0, 0, kOutputSize.width, kOutputSize.height)) != box;
}

}  // namespace

void PersonTracker::update(const std::vector<Observation>& seen, std::int64_t ms) {
  std::vector<std::vector<double>> costs;
  for (const Observation& one : seen) {
    costs.emplace_back();
    for (const Track& track : mTracks) {
      costs.back().push_back(cost(expected(track, ms), one.box));
    }
  }
  const std::vector<int> paired = assign(costs);
  for (Track& track : mTracks) {
    ++track.missed;
  }
  for (std::size_t index = 0; index < seen.size(); ++index) {
    if (paired[index] >= 0) {
      correct(mTracks[static_cast<std::size_t>(paired[index])], seen[index], ms);
    } else if (beginsPerson(seen[index], mOptions)) {
      Track track;
      track.firstMs = ms;
      track.seenMs = ms;
      track.box = seen[index].box;
      track.last = seen[index];
      mTracks.push_back(track);
    }
  }
  mTracks.erase(std::remove_if(mTracks.begin(), mTracks.end(),
                               [&](const Track& track) { return isForgotten(track, ms); }),
                mTracks.end());
  for (Track& track : mTracks) {
    if (track.id == 0 && track.seenMs - track.firstMs >= mOptions.confirmMs) {
      track.id = ++mLastId;
    }
  }
}

std::vector<TrackedPerson> PersonTracker::at(std::int64_t ms) const {
  std::vector<TrackedPerson> persons;
  for (const Track& track : mTracks) {
    if (track.id == 0 || isForgotten(track, ms)) {
      continue;
    }
    persons.push_back({track.id, viewsAt(track, ms)});
  }
  std::sort(persons.begin(), persons.end(),
            [](const TrackedPerson& a, const TrackedPerson& b) { return a.id < b.id; });
  return persons;
}

std::vector<Observation::View> PersonTracker::viewsAt(const Track& track, std::int64_t ms) const {
  const cv::Rect2d now = expected(track, ms);
  std::vector<Observation::View> views = track.last.views;
  for (Observation::View& view : views) {
    const cv::Rect2d then = mRoom.toCamera(view.camera, track.last.box);
    const cv::Rect2d there = mRoom.toCamera(view.camera, now);
    cv::Rect2d& box = view.detection.box;
    box += there.tl() - then.tl();
    box.width *= then.width > 0 ? there.width / then.width : 1;
    box.height *= then.height > 0 ? there.height / then.height : 1;
  }
  return views;
}

cv::Rect2d PersonTracker::expected(const Track& track, std::int64_t ms) const {
  // A speed that fades with the time constant T carries T (1 - e^(-t/T)) far.
  const auto since = static_cast<double>(ms - track.seenMs);
  const double fading = std::max(since - mOptions.coastMs, 0.0);
  const double way =
      std::min(since, mOptions.coastMs) + mOptions.haltMs * (1.0 - std::exp(-fading / mOptions.haltMs));
  return track.box + track.speed * way;
}

cv::Point2d PersonTracker::expectedSpeed(const Track& track, std::int64_t ms) const {
  const double fading = std::max(static_cast<double>(ms - track.seenMs) - mOptions.coastMs, 0.0);
  return track.speed * std::exp(-fading / mOptions.haltMs);
}

bool PersonTracker::isForgotten(const Track& track, std::int64_t ms) const {
  if (track.id == 0) {
    return track.missed >= mOptions.looksToForgetUnconfirmed;
  }
  const std::vector<Observation::View> views = viewsAt(track, ms);
  const bool isAtEdge = std::all_of(views.begin(), views.end(), crossesEdge);
  return ms - track.seenMs > (isAtEdge ? mOptions.forgetAtEdgeMs : mOptions.forgetMs) &&
         track.missed >= mOptions.looksToForget;
}

double PersonTracker::cost(const cv::Rect2d& expected, const cv::Rect2d& seen) const {
  const double distance = distanceInSizes(expected, seen);
  return distance < mOptions.reachInSizes ? distance / mOptions.reachInSizes + 1.0 - overlap(expected, seen)
                                          : kForbidden;
}

void PersonTracker::correct(Track& track, const Observation& seen, std::int64_t ms) {
  const cv::Rect2d guess = expected(track, ms);
  const cv::Point2d error = centre(seen.box) - centre(guess);
  const auto since = static_cast<double>(std::max<std::int64_t>(ms - track.seenMs, 1));
  const double width = guess.width + mOptions.sizeGain * (seen.box.width - guess.width);
  const double height = guess.height + mOptions.sizeGain * (seen.box.height - guess.height);
  const cv::Point2d middle = centre(guess) + mOptions.placeGain * error;
  track.box = {middle.x - width / 2, middle.y - height / 2, width, height};
  track.speed = expectedSpeed(track, ms) + error * (mOptions.speedGain / since);
  track.seenMs = ms;
  track.last = seen;
  track.missed = 0;
}

}  // namespace fyn::productionrules::video
