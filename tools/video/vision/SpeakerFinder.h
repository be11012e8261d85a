#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <vector>

#include "tools/video/vision/PersonTracker.h"

namespace fyn::productionrules::video {

/** Who is taken to speak where no sound is heard. */
enum class WithoutSound { nobody, liveliestMouth };

/**
 * Finds who speaks: while speech is heard in the room, the person whose mouth moves most, compared with the
 * upper part of the face, which moves with the head alone. A speaker stays it for half a second.
 */
class SpeakerFinder {
 public:
  explicit SpeakerFinder(WithoutSound withoutSound) : mWithoutSound(withoutSound) {}

  /**
   * Marks who of those that are there at `ms` speaks; whom a detector has marked stays so. `speech`: whether
   * it is heard, nothing without sound.
   */
  void mark(std::vector<TrackedPerson>& persons, std::optional<bool> speech, std::int64_t ms);

 private:
  /** How one face has moved lately. */
  struct Motion {
    /** As it was seen last, and when. */
    cv::Mat face;
    std::int64_t ms = 0;
    double mouth = 0;
    double above = 0;
  };

  void look(Motion& motion, const TrackedPerson& person, std::int64_t ms) const;
  /** Number of the person whose mouth is the liveliest, and livelier than `most`; 0 for none. */
  std::int32_t liveliest(double most) const;

  const WithoutSound mWithoutSound;
  std::map<std::int32_t, Motion> mMotions;
  std::int32_t mSpeaker = 0;
  std::int64_t mSpeaksUntil = 0;
};

}  // namespace fyn::productionrules::video
