#include "tools/meeting/Detector.h"

#include <algorithm>

namespace fyn::productionrules {

namespace {

constexpr std::int32_t kFirstFalseId = 10'000;
constexpr std::int32_t kFalseIdsPerCamera = 100'000;
constexpr std::int32_t kNewNumbersPerCamera = 1'000'000;
constexpr std::uint64_t kDetectorStream = 2'000'000;
constexpr std::uint64_t kNumberingStream = 4'000'000;

/** Beyond this the jitter turns back, so that a box never drifts off its head. */
constexpr std::int64_t kFarthestOffset = 60'000;

/** Most false boxes flash up, a few (a picture on the wall) stay. */
std::array<Quantile, 4> falseLife(std::int64_t mean) {
  const auto scaled = [mean](std::int64_t ofSixteen) {
    return std::max<std::int64_t>(1, ofSixteen * mean / 16);
  };
  return {{{0, scaled(1)}, {400, scaled(3)}, {850, scaled(12)}, {1000, scaled(150)}}};
}

/** Lengths of which one in ten is longer than `long10`; a few last three times as long. */
std::array<Quantile, 7> dropOutLength(std::int64_t long10) {
  return {{{0, 1},
           {300, 1},
           {500, 2},
           {750, std::max<std::int64_t>(2, long10 * 2 / 7)},
           {900, long10},
           {970, long10 * 15 / 7},
           {1000, long10 * 45 / 14}}};
}

/** In thousandths. */
template <std::size_t N>
std::int64_t meanOf(const std::array<Quantile, N>& points) {
  std::int64_t twice = 0;
  for (std::size_t i = 1; i < N; ++i) {
    twice += (points[i].parts - points[i - 1].parts) * (points[i].value + points[i - 1].value);
  }
  return twice / 2;
}

std::int32_t shifted(std::int32_t pixel, std::int64_t offset, std::int32_t width) {
  const std::int64_t scaled = offset * width;
  const std::int64_t half = scaled < 0 ? -kMillion / 2 : kMillion / 2;
  return static_cast<std::int32_t>(pixel + (scaled + half) / kMillion);
}

}  // namespace

Detector::Detector(std::uint64_t seed, std::int32_t camera, const MeetingErrors& errors,
                   const Dimension& image)
    : mRandom(seed, kDetectorStream + static_cast<std::uint64_t>(camera)),
      mNumbering(seed, kNumberingStream + static_cast<std::uint64_t>(camera)),
      mErrors(errors),
      mImage(image),
      mDropOut(dropOutLength(errors.dropOut)),
      mFalseLife(falseLife(errors.falseBoxLife)),
      mNextFalseId(kFirstFalseId + camera * kFalseIdsPerCamera),
      mNextNumber((camera + 1) * kNewNumbersPerCamera) {}

bool Detector::isMissed(Track& track) {
  if (track.framesToMiss > 0) {
    --track.framesToMiss;
    return true;
  }
  // Seen and missed stretches alternate; the share of the missed ones follows from their mean length.
  const std::int64_t seenLength = (kMillion - mErrors.missed) * meanOf(mDropOut);
  if (mErrors.missed == 0 || !mRandom.chance(kMillion * 1000 * mErrors.missed / seenLength)) {
    return false;
  }
  track.framesToMiss = draw(mRandom, mDropOut) - 1;
  return true;
}

void Detector::jitter(std::int64_t& offset) {
  const std::int64_t most = std::max(mErrors.jitter, mErrors.jitter95);
  const std::array<Quantile, 4> step{{{0, 0}, {500, mErrors.jitter}, {950, most}, {1000, most * 3 / 2}}};
  const std::int64_t length = draw(mRandom, step);
  const bool turnsBack = offset > kFarthestOffset || offset < -kFarthestOffset;
  const bool goesUp = turnsBack ? offset < 0 : mRandom.chance(kMillion / 2);
  offset += goesUp ? length : -length;
}

std::int32_t Detector::numberOf(Track& track) {
  if (track.wasMissed && mNumbering.chance(mErrors.newNumbers)) {
    track.number = mNextNumber++;
  }
  return track.number;
}

std::optional<Detector::TrackedBox> Detector::see(std::int32_t person, const Rect& box) {
  Track& track = mTracks.try_emplace(person, Track{0, 0, 0, false, person}).first->second;
  jitter(track.offsetX);
  jitter(track.offsetY);
  if (isMissed(track)) {
    track.wasMissed = true;
    return std::nullopt;
  }
  const std::int32_t number = numberOf(track);
  track.wasMissed = false;
  const std::int32_t width = box.right - box.left;
  return TrackedBox{number,
                    {shifted(box.left, track.offsetX, width), shifted(box.top, track.offsetY, width),
                     shifted(box.right, track.offsetX, width), shifted(box.bottom, track.offsetY, width)}};
}

const std::vector<Detector::FalseBox>& Detector::falseBoxes(std::size_t seen, std::int32_t headHeight) {
  for (FalseBox& box : mFalseBoxes) {
    --box.framesLeft;
  }
  mFalseBoxes.erase(std::remove_if(mFalseBoxes.begin(), mFalseBoxes.end(),
                                   [](const FalseBox& box) { return box.framesLeft <= 0; }),
                    mFalseBoxes.end());
  const std::int64_t perSeenHead = mErrors.falseBoxes * kMillion / (kMillion - mErrors.falseBoxes);
  const std::int64_t startsPerHead = perSeenHead * 1000 / meanOf(mFalseLife);
  for (std::size_t head = 0; head < seen; ++head) {
    if (!mRandom.chance(startsPerHead)) {
      continue;
    }
    const auto height = static_cast<std::int32_t>(mRandom.between(headHeight / 2 + 4, headHeight + 4));
    const std::int32_t width = height * 3 / 4;
    const auto left = static_cast<std::int32_t>(mRandom.between(0, std::max(0, mImage.width - width)));
    const auto top = static_cast<std::int32_t>(mRandom.between(0, std::max(0, mImage.height - height)));
    mFalseBoxes.push_back({mNextFalseId++,
                           {left, top, left + width, top + height},
                           static_cast<int>(draw(mRandom, mFalseLife))});
  }
  return mFalseBoxes;
}

}  // namespace fyn::productionrules
