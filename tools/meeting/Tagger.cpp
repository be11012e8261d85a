#include "tools/meeting/Tagger.h"

#include <algorithm>

namespace fyn::productionrules {

namespace {

constexpr std::uint64_t kTaggerStream = 3'000'000;

constexpr std::int64_t kShortestGap = 4;
constexpr std::int64_t kLongestGap = 15;

/** Times as counts of results: the first one at or after `t` milliseconds, and back. */
std::int64_t resultAt(std::int64_t t) {
  return (t * kResultsPerSecond + 999) / 1000;
}

std::int64_t timeOf(std::int64_t result) {
  return result * 1000 / kResultsPerSecond;
}

}  // namespace

Tagger::Tagger(std::uint64_t seed, const MeetingErrors& errors)
    : mDelays(seed, kTaggerStream),
      mPersons(seed, kTaggerStream + 1),
      mGaps(seed, kTaggerStream + 2),
      mErrors(errors) {
  mTimeToGap = timeToGap(kLongestGap);
}

std::int64_t Tagger::delay(std::int64_t mean, std::int64_t deviation) {
  // Twelve even ones make a normal one, with whole numbers alone.
  std::int64_t sum = -6 * kMillion;
  for (int i = 0; i < 12; ++i) {
    sum += mDelays.between(0, kMillion);
  }
  return std::max<std::int64_t>(0, (mean * kMillion + deviation * sum + kMillion / 2) / kMillion);
}

std::int32_t Tagger::personOf(const SpeechTurn& turn, const std::vector<PersonPath>& paths) {
  if (!mPersons.chance(mErrors.tagWrong)) {
    return turn.person;
  }
  std::vector<std::int32_t> others;
  for (std::size_t index = 0; index < paths.size(); ++index) {
    const auto person = static_cast<std::int32_t>(index) + 1;
    if (person != turn.person && paths[index].isThere(turn.start)) {
      others.push_back(person);
    }
  }
  return others.empty() ? turn.person : others[mPersons.below(others.size())];
}

std::int64_t Tagger::timeToGap(std::int64_t gap) {
  const std::int64_t mean = gap * (kMillion - mErrors.tagGaps) / std::max<std::int64_t>(1, mErrors.tagGaps);
  return std::max<std::int64_t>(1, mean * mGaps.between(50, 150) / 100);
}

void Tagger::addWithGaps(std::int64_t start, std::int64_t end, std::int32_t person,
                         std::vector<SpeechTurn>& tags) {
  while (mErrors.tagGaps > 0 && end - start > mTimeToGap) {
    if (mTimeToGap > 0) {
      tags.push_back({timeOf(start), timeOf(start + mTimeToGap), person});
      start += mTimeToGap;
    }
    const std::int64_t gap = std::min(end - start, mGaps.between(kShortestGap, kLongestGap));
    start += gap;
    mTimeToGap = timeToGap(gap);
  }
  if (start < end) {
    tags.push_back({timeOf(start), timeOf(end), person});
    mTimeToGap -= end - start;
  }
}

std::vector<SpeechTurn> Tagger::tagsOf(const std::vector<SpeechTurn>& turns,
                                       const std::vector<PersonPath>& paths) {
  std::vector<SpeechTurn> tags;
  for (const SpeechTurn& turn : turns) {
    const std::int64_t start = resultAt(turn.start) + delay(mErrors.tagLate, mErrors.tagLateSd);
    const std::int64_t end = resultAt(turn.end) + delay(mErrors.tagGoesOn, mErrors.tagGoesOnSd);
    const std::int32_t person = personOf(turn, paths);
    if (start < end) {
      addWithGaps(start, end, person, tags);
    }
  }
  return tags;
}

}  // namespace fyn::productionrules
