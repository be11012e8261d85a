#pragma once

#include <cstdint>
#include <vector>

#include "tools/video/vision/RoomAxis.h"

namespace fyn::productionrules::video {

struct TrackerOptions {
  /** The certainty from which on a sight begins a person; with less it only goes on with one. */
  double scoreToBegin = 0.58;
  /** The same where the left or the right edge of the picture cuts the head, and things pass for half a face.
   */
  double scoreToBeginAtSide = 0.75;
  /** How long somebody is seen, twice at least, before the person counts. More: fewer ghosts, later
   * entrances. */
  std::int64_t confirmMs = 300;
  /** How long a person stays without being seen, and the looks that must have missed it by then: a slow
   * detector may look less often. More: fewer drop-outs, later exits. */
  std::int64_t forgetMs = 1500;
  int looksToForget = 2;
  /** The same for somebody who was about to leave the picture, across its edge. */
  std::int64_t forgetAtEdgeMs = 400;
  /** The looks in a row that must miss somebody who does not count yet; an error of the detector seldom comes
   * again. */
  int looksToForgetUnconfirmed = 3;
  /** How far from where it was expected a person may be, in head sizes. More: fast walkers keep their
   * number, but so may two who pass each other closely. */
  double reachInSizes = 2.0;
  /** Shares of the error that correct place, speed and size. More: quicker, but the boxes tremble more. */
  double placeGain = 0.7;
  double speedGain = 0.25;
  double sizeGain = 0.3;
  /** How long somebody who is not seen goes on at full speed, and then the time constant of coming to a
   * stand. Longer: walkers survive longer drop-outs, but who stopped meanwhile is looked for farther away. */
  double coastMs = 300;
  double haltMs = 300;
};

/** A person with a number of its own. */
struct TrackedPerson {
  std::int32_t id = 0;
  /** The heads as the cameras saw them last, moved to where they are now. */
  std::vector<Observation::View> views;
};

/**
 * Gives persons stable numbers: pairs what is seen with what is known by overlap and distance from where each
 * was to be expected, the cheapest pairing of all. Pure: the same observations give the same persons.
 */
class PersonTracker {
 public:
  /** `room` must outlive the tracker. */
  explicit PersonTracker(const RoomAxis& room, const TrackerOptions& options = {})
      : mRoom(room), mOptions(options) {}

  /** All persons seen at `ms`, which is later than at the call before. */
  void update(const std::vector<Observation>& seen, std::int64_t ms);

  /** The persons at `ms`, no earlier than the latest update, in the order of their numbers. */
  std::vector<TrackedPerson> at(std::int64_t ms) const;

 private:
  struct Track {
    /** 0 until it counts. */
    std::int32_t id = 0;
    std::int64_t firstMs = 0;
    /** Looks since the last sight. */
    int missed = 0;
    std::int64_t seenMs = 0;
    /** In the room, smoothed, at `seenMs`. */
    cv::Rect2d box;
    /** Room pixels per millisecond. */
    cv::Point2d speed;
    /** What was seen last, as it was. */
    Observation last;
  };

  /** Where a track is to be expected at `ms`, and its speed then. */
  cv::Rect2d expected(const Track& track, std::int64_t ms) const;
  cv::Point2d expectedSpeed(const Track& track, std::int64_t ms) const;
  bool isForgotten(const Track& track, std::int64_t ms) const;
  /** The heads as the cameras saw them last, moved to where they are at `ms`. */
  std::vector<Observation::View> viewsAt(const Track& track, std::int64_t ms) const;
  double cost(const cv::Rect2d& expected, const cv::Rect2d& seen) const;
  void correct(Track& track, const Observation& seen, std::int64_t ms);

  const RoomAxis& mRoom;
  const TrackerOptions mOptions;
  std::vector<Track> mTracks;
  std::int32_t mLastId = 0;
};

}  // namespace fyn::productionrules::video
