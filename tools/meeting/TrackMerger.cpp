#include "tools/meeting/TrackMerger.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <set>

namespace fyn::productionrules {

namespace {

/** For a camera of a single frame, whose interval is not known. */
constexpr std::int64_t kUnknownInterval = 100;

std::optional<int> rounded(const std::optional<double>& degrees) {
  return degrees ? std::optional(static_cast<int>(std::lround(*degrees))) : std::nullopt;
}

}  // namespace

TrackMerger::TrackMerger(const std::vector<CameraTracks>& cameras, const Speech& speech,
                         const MergeOptions& options)
    : mCameras(cameras), mSpeech(speech) {
  for (const CameraTracks& camera : cameras) {
    const std::int64_t interval = frameInterval(camera);
    mIntervals.push_back(interval == 0 ? kUnknownInterval : interval);
    mGaps.push_back(options.longestGap.value_or(mIntervals.back() * 3 / 2));
  }
  mTimes = options.fps ? regularTimes(*options.fps) : frameTimes();
}

std::vector<std::int64_t> TrackMerger::frameTimes() const {
  std::set<std::int64_t> times;
  for (const CameraTracks& camera : mCameras) {
    for (const auto& [time, heads] : camera.frames) {
      times.insert(time);
    }
  }
  // Frames without any head leave no row. They are results too: the room was empty.
  const std::int64_t interval = *std::min_element(mIntervals.begin(), mIntervals.end());
  const std::int64_t gap = *std::min_element(mGaps.begin(), mGaps.end());
  std::vector<std::int64_t> all;
  for (const std::int64_t time : times) {
    const std::int64_t firstEmpty = all.empty() ? time : all.back() + gap + 1;
    for (std::int64_t empty = firstEmpty; empty < time; empty += interval) {
      all.push_back(empty);
    }
    all.push_back(time);
  }
  return all;
}

std::vector<std::int64_t> TrackMerger::regularTimes(int fps) const {
  std::int64_t first = std::numeric_limits<std::int64_t>::max();
  std::int64_t last = 0;
  for (const CameraTracks& camera : mCameras) {
    first = std::min(first, camera.frames.begin()->first);
    last = std::max(last, camera.frames.rbegin()->first);
  }
  std::vector<std::int64_t> times;
  for (std::int64_t tick = first * fps / 1000; tick * 1000 / fps <= last; ++tick) {
    times.push_back(tick * 1000 / fps);
  }
  return times;
}

VisionResult TrackMerger::resultAt(std::size_t index) const {
  VisionResult result;
  result.t = mTimes.at(index);
  result.frameNumber = static_cast<std::int64_t>(index) + 1;
  std::map<std::int32_t, SeenPerson> persons;
  for (std::size_t camera = 0; camera < mCameras.size(); ++camera) {
    const auto& frames = mCameras[camera].frames;
    auto frame = frames.upper_bound(result.t);
    if (frame == frames.begin() || result.t - (--frame)->first > mGaps[camera]) {
      continue;
    }
    for (const TrackedHead& tracked : frame->second) {
      SeenHead head;
      head.camera = static_cast<std::int32_t>(camera);
      head.box = tracked.box;
      head.speaking = mSpeech.speaks(tracked.person, result.t);
      // The service ranks views by how far a face is turned away, to whichever side.
      head.yaw = rounded(tracked.yaw ? std::optional(std::abs(*tracked.yaw)) : std::nullopt);
      head.pitch = rounded(tracked.pitch);
      SeenPerson& person = persons[tracked.person];
      person.id = tracked.person;
      person.heads.push_back(head);
    }
  }
  for (auto& [id, person] : persons) {
    result.persons.push_back(std::move(person));
  }
  return result;
}

}  // namespace fyn::productionrules
