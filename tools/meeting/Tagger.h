#pragma once

#include <cstdint>
#include <vector>

#include "tools/base/Random.h"
#include "tools/meeting/MeetingErrors.h"
#include "tools/meeting/Motion.h"
#include "tools/meeting/Speech.h"

namespace fyn::productionrules {

/** What says of each result who speaks: late, too long, with gaps, and now and then of the wrong person. */
class Tagger {
 public:
  Tagger(std::uint64_t seed, const MeetingErrors& errors);

  /** When whom it takes for the speaker of each turn. Person N has the path N - 1; a wrong one is there as
   * well. */
  std::vector<SpeechTurn> tagsOf(const std::vector<SpeechTurn>& turns, const std::vector<PersonPath>& paths);

 private:
  std::int64_t delay(std::int64_t mean, std::int64_t deviation);
  std::int32_t personOf(const SpeechTurn& turn, const std::vector<PersonPath>& paths);
  void addWithGaps(std::int64_t start, std::int64_t end, std::int32_t person, std::vector<SpeechTurn>& tags);
  std::int64_t timeToGap(std::int64_t gap);

  /** Streams of their own, so that one kind of error changes nothing of the others. */
  Random mDelays;
  Random mPersons;
  Random mGaps;
  const MeetingErrors mErrors;
  std::int64_t mTimeToGap = 0;
};

}  // namespace fyn::productionrules
