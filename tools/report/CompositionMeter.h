#pragma once

#include <cstdint>
#include <vector>

#include "tools/report/Measurement.h"
#include "tools/report/RoomState.h"

namespace fyn::productionrules {

/** Measures how people stand in the picture, weighted by the time that they stand so. */
class CompositionMeter {
 public:
  explicit CompositionMeter(Measurement& measurement) : mMeasurement(measurement) {}

  /** From now on the room and the picture are these. */
  void take(const RoomState& room);

  /** The state that was taken last lasted from `from` to the later `to`, in milliseconds. */
  void last(std::int64_t from, std::int64_t to);

 private:
  void takeFrames(const RoomState& room, std::size_t stream);
  void addPersons(PersonTime& sum, std::int64_t time) const;

  Measurement& mMeasurement;
  // What the state adds per millisecond.
  std::int64_t mStreams = 0;
  PersonTime mPersons;
  std::int64_t mSpeaking = 0;
  std::int64_t mSpeakersFramed = 0;
  std::int64_t mSpeakersInView = 0;
  std::int64_t mSubjects = 0;
  std::int64_t mSubjectsWhole = 0;
  std::vector<std::int64_t> mHeadSizes;
  std::vector<std::int64_t> mHeadRooms;
  std::vector<std::int64_t> mThirds;
};

}  // namespace fyn::productionrules
