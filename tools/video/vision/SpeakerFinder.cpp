#include "tools/video/vision/SpeakerFinder.h"

#include <algorithm>
#include <cmath>

namespace fyn::productionrules::video {

namespace {

constexpr std::int64_t kHoldMs = 500;
// Faces that were not seen for longer have moved too far to be compared.
constexpr std::int64_t kComparableMs = 500;
// The time constant over which motion counts.
constexpr double kMemoryMs = 700;
// People who talk have 1.3 to 2.8, others 0.6 to 1.3, some whose head moves more for a moment: where nothing
// is heard, nobody else is to pass for a speaker.
constexpr double kLivelyMouth = 1.3;
constexpr double kLivelyMouthUnheard = 1.6;
// What the noise of a camera makes of a face that does not move.
constexpr double kStillness = 0.5;

/** Mean difference of two faces within a part of them. */
double difference(const cv::Mat& a, const cv::Mat& b, const cv::Rect& part) {
  return cv::norm(a(part), b(part), cv::NORM_L1) / part.area();
}

/** The face in the first view that has one. */
cv::Mat faceOf(const TrackedPerson& person) {
  for (const Observation::View& view : person.views) {
    if (!view.detection.face.empty()) {
      return view.detection.face;
    }
  }
  return {};
}

}  // namespace

void SpeakerFinder::mark(std::vector<TrackedPerson>& persons, std::optional<bool> speech, std::int64_t ms) {
  std::map<std::int32_t, Motion> motions;
  for (const TrackedPerson& person : persons) {
    Motion& motion = motions[person.id] = mMotions[person.id];
    look(motion, person, ms);
  }
  mMotions = std::move(motions);
  const bool maySpeak = speech.value_or(mWithoutSound == WithoutSound::liveliestMouth);
  const std::int32_t candidate = maySpeak ? liveliest(speech ? kLivelyMouth : kLivelyMouthUnheard) : 0;
  if (candidate != 0 && (candidate == mSpeaker || ms > mSpeaksUntil)) {
    mSpeaker = candidate;
    mSpeaksUntil = ms + kHoldMs;
  }
  for (TrackedPerson& person : persons) {
    for (Observation::View& view : person.views) {
      view.detection.speaking |= person.id == mSpeaker && ms <= mSpeaksUntil;
    }
  }
}

void SpeakerFinder::look(Motion& motion, const TrackedPerson& person, std::int64_t ms) const {
  const cv::Mat face = faceOf(person);
  if (face.empty() || face.data == motion.face.data) {
    return;
  }
  const auto since = static_cast<double>(ms - motion.ms);
  if (!motion.face.empty() && since <= kComparableMs) {
    const double share = 1 - std::exp(-since / kMemoryMs);
    motion.mouth += share * (difference(face, motion.face, kMouthInFace) - motion.mouth);
    motion.above += share * (difference(face, motion.face, kAboveInFace) - motion.above);
  } else {
    motion.mouth = motion.above = 0;
  }
  motion.face = face;
  motion.ms = ms;
}

std::int32_t SpeakerFinder::liveliest(double most) const {
  std::int32_t best = 0;
  for (const auto& [person, motion] : mMotions) {
    const double lively = motion.mouth / std::max(motion.above, kStillness);
    if (lively > most) {
      most = lively;
      best = person;
    }
  }
  return best;
}

}  // namespace fyn::productionrules::video
