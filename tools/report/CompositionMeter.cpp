#include "tools/report/CompositionMeter.h"

#include <algorithm>
#include <cmath>

namespace fyn::productionrules {

namespace {

constexpr double kUpperThird = 1.0 / 3.0;

// The time line ends after four days: times are the recording's, and it may say anything.
constexpr std::int64_t kMostBuckets = std::int64_t{4} * 86400;

/** A share in tenths of a per cent. Hostile boxes may lie anywhere; ten pictures away is far enough. */
std::int64_t tenthsOfPercent(double share) {
  return std::llround(std::clamp(share, -10.0, 10.0) * 1000.0);
}

std::int64_t& countOf(PersonTime& persons, Visibility visibility) {
  switch (visibility) {
    case Visibility::InView:
      return persons.inView;
    case Visibility::Cut:
      return persons.cut;
    default:
      return persons.off;
  }
}

/** The heads that one frame shows. */
struct FrameHeads {
  int count = 0;
  double top = 0;
  double eyes = 0;

  void add(const Rect& box) {
    top = count == 0 ? box.top : std::min(top, static_cast<double>(box.top));
    // The eyes lie half-way down a head.
    eyes += (static_cast<double>(box.top) + box.bottom) / 2;
    ++count;
  }
};

}  // namespace

void CompositionMeter::take(const RoomState& room) {
  mStreams = static_cast<std::int64_t>(room.pictures.size());
  mPersons = {};
  mSpeaking = 0;
  mSpeakersFramed = 0;
  mSpeakersInView = 0;
  mSubjects = 0;
  mSubjectsWhole = 0;
  for (const PersonState& person : room.persons) {
    ++countOf(mPersons, person.visibility);
    mSubjects += person.frames;
    mSubjectsWhole += person.framesWhole;
    if (person.speaks) {
      ++mSpeaking;
      mSpeakersFramed += person.framedAsSpeaker ? 1 : 0;
      mSpeakersInView += person.visibility == Visibility::InView ? 1 : 0;
    }
  }
  mHeadSizes.clear();
  mHeadRooms.clear();
  mThirds.clear();
  for (std::size_t stream = 0; stream < room.pictures.size(); ++stream) {
    takeFrames(room, stream);
  }
}

void CompositionMeter::takeFrames(const RoomState& room, std::size_t stream) {
  const std::vector<FrameView>& frames = room.pictures[stream].frames;
  std::vector<FrameHeads> heads(frames.size());
  for (const PersonState& person : room.persons) {
    const Appearance& appearance = person.appearances[stream];
    if (appearance.frame < 0) {
      continue;
    }
    const auto index = static_cast<std::size_t>(appearance.frame);
    const FrameView& frame = frames[index];
    heads[index].add(appearance.box);
    const double height = static_cast<double>(appearance.box.bottom) - appearance.box.top;
    const double zoom = (static_cast<double>(frame.dest.bottom) - frame.dest.top) /
                        (static_cast<double>(frame.source.bottom) - frame.source.top);
    mHeadSizes.push_back(tenthsOfPercent(height * zoom / kOutputSize.height));
  }
  for (std::size_t index = 0; index < frames.size(); ++index) {
    if (heads[index].count > 0) {
      const double top = frames[index].source.top;
      const double height = frames[index].source.bottom - top;
      mHeadRooms.push_back(tenthsOfPercent((heads[index].top - top) / height));
      const double eyes = (heads[index].eyes / heads[index].count - top) / height;
      mThirds.push_back(tenthsOfPercent(std::abs(eyes - kUpperThird)));
    }
  }
}

void CompositionMeter::addPersons(PersonTime& sum, std::int64_t time) const {
  sum.inView += mPersons.inView * time;
  sum.cut += mPersons.cut * time;
  sum.off += mPersons.off * time;
}

void CompositionMeter::last(std::int64_t from, std::int64_t to) {
  const std::int64_t time = to - from;
  Measurement& sums = mMeasurement;
  sums.observedMs += time;
  sums.streamMs += mStreams * time;
  sums.speakingMs += mSpeaking * time;
  sums.speakerFramedMs += mSpeakersFramed * time;
  sums.speakerInViewMs += mSpeakersInView * time;
  sums.subjectMs += mSubjects * time;
  sums.subjectWholeMs += mSubjectsWhole * time;
  addPersons(sums.personTime, time);
  sums.occupiedMs += mPersons.total() > 0 ? time : 0;
  sums.everybodyMs += mPersons.total() > 0 && mPersons.inView == mPersons.total() ? time : 0;
  const std::int64_t bucket = from / TimeLine::kBucketMs;
  if (bucket < kMostBuckets) {
    std::vector<PersonTime>& buckets = sums.timeLine.buckets;
    buckets.resize(std::max(buckets.size(), static_cast<std::size_t>(bucket) + 1));
    addPersons(buckets[static_cast<std::size_t>(bucket)], time);
  }
  const auto addAll = [time](Distribution& distribution, const std::vector<std::int64_t>& values) {
    for (const std::int64_t value : values) {
      distribution.add(value, time);
    }
  };
  addAll(sums.headSize, mHeadSizes);
  addAll(sums.headRoom, mHeadRooms);
  addAll(sums.thirds, mThirds);
}

}  // namespace fyn::productionrules
