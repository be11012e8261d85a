#include "tools/meeting/Detector.h"

#include <algorithm>
#include <charconv>

namespace fyn::productionrules {

namespace {

constexpr std::int64_t kMillion = 1'000'000;

/** Measured: recall 0.71 to 0.76, false boxes 7 to 38 %, jitter median 0.2 to 0.9 %, 95th percentile 2 to 4
 * %. */
constexpr DetectorNoise kReal{265'000, 225'000, 5'500, 30'000};
constexpr DetectorNoise kHigh{290'000, 380'000, 9'000, 40'000};

constexpr std::array<std::pair<const char*, std::int64_t>, 4> kLevels{
    {{"none", 0}, {"low", 100'000}, {"real", 500'000}, {"high", kMillion}}};

/** Beyond this the jitter turns back, so that a box never drifts off its head. */
constexpr std::int64_t kFarthestOffset = 60'000;

/** Frames that a false box lives: most flash up, a few (a picture on the wall) stay. */
constexpr std::array<Quantile, 4> kFalseLife{{{0, 1}, {400, 3}, {850, 12}, {1000, 150}}};

/** In thousandths. */
template <std::size_t N>
std::int64_t meanOf(const std::array<Quantile, N>& points) {
  std::int64_t twice = 0;
  for (std::size_t i = 1; i < N; ++i) {
    twice += (points[i].parts - points[i - 1].parts) * (points[i].value + points[i - 1].value);
  }
  return twice / 2;
}

std::int64_t blend(std::int64_t a, std::int64_t b, std::int64_t parts) {
  return a + (b - a) * parts / kMillion;
}

DetectorNoise blend(const DetectorNoise& a, const DetectorNoise& b, std::int64_t parts) {
  return {blend(a.missed, b.missed, parts), blend(a.falseBoxes, b.falseBoxes, parts),
          blend(a.jitterMedian, b.jitterMedian, parts), blend(a.jitter95, b.jitter95, parts)};
}

/** A level's name or number, in parts of a million. */
std::optional<std::int64_t> levelParts(const std::string& text) {
  for (const auto& [name, parts] : kLevels) {
    if (text == name) {
      return parts;
    }
  }
  std::size_t used = 0;
  double value = -1;
  try {
    value = std::stod(text, &used);
  } catch (const std::exception&) {
    return std::nullopt;
  }
  return used == text.size() && value >= 0 && value <= 1
             ? std::optional(static_cast<std::int64_t>(value * static_cast<double>(kMillion)))
             : std::nullopt;
}

std::int32_t shifted(std::int32_t pixel, std::int64_t offset, std::int32_t width) {
  const std::int64_t scaled = offset * width;
  const std::int64_t half = scaled < 0 ? -kMillion / 2 : kMillion / 2;
  return static_cast<std::int32_t>(pixel + (scaled + half) / kMillion);
}

}  // namespace

const std::array<Quantile, 7> kDropOutLength{
    {{0, 1}, {300, 1}, {500, 2}, {750, 8}, {900, 28}, {970, 60}, {1000, 90}}};

std::optional<DetectorNoise> noiseOf(const std::string& level) {
  const std::optional<std::int64_t> parts = levelParts(level);
  if (!parts) {
    return std::nullopt;
  }
  constexpr std::int64_t kHalf = kMillion / 2;
  return *parts <= kHalf ? blend(DetectorNoise{}, kReal, *parts * 2)
                         : blend(kReal, kHigh, (*parts - kHalf) * 2);
}

bool Detector::isMissed(Track& track) {
  if (track.framesToMiss > 0) {
    --track.framesToMiss;
    return true;
  }
  // Seen and missed stretches alternate; the share of the missed ones follows from their mean length.
  const std::int64_t seenLength = (kMillion - mNoise.missed) * meanOf(kDropOutLength);
  if (mNoise.missed == 0 || !mRandom.chance(kMillion * 1000 * mNoise.missed / seenLength)) {
    return false;
  }
  track.framesToMiss = draw(mRandom, kDropOutLength) - 1;
  return true;
}

void Detector::jitter(std::int64_t& offset) {
  const std::array<Quantile, 4> step{
      {{0, 0}, {500, mNoise.jitterMedian}, {950, mNoise.jitter95}, {1000, mNoise.jitter95 * 3 / 2}}};
  const std::int64_t length = draw(mRandom, step);
  const bool turnsBack = offset > kFarthestOffset || offset < -kFarthestOffset;
  const bool goesUp = turnsBack ? offset < 0 : mRandom.chance(kMillion / 2);
  offset += goesUp ? length : -length;
}

std::optional<Rect> Detector::see(std::int32_t person, const Rect& box) {
  Track& track = mTracks[person];
  jitter(track.offsetX);
  jitter(track.offsetY);
  if (isMissed(track)) {
    return std::nullopt;
  }
  const std::int32_t width = box.right - box.left;
  return Rect{shifted(box.left, track.offsetX, width), shifted(box.top, track.offsetY, width),
              shifted(box.right, track.offsetX, width), shifted(box.bottom, track.offsetY, width)};
}

const std::vector<Detector::FalseBox>& Detector::falseBoxes(std::size_t seen, std::int32_t headHeight) {
  for (FalseBox& box : mFalseBoxes) {
    --box.framesLeft;
  }
  mFalseBoxes.erase(std::remove_if(mFalseBoxes.begin(), mFalseBoxes.end(),
                                   [](const FalseBox& box) { return box.framesLeft <= 0; }),
                    mFalseBoxes.end());
  const std::int64_t perSeenHead = mNoise.falseBoxes * kMillion / (kMillion - mNoise.falseBoxes);
  const std::int64_t startsPerHead = perSeenHead * 1000 / meanOf(kFalseLife);
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
                           static_cast<int>(draw(mRandom, kFalseLife))});
  }
  return mFalseBoxes;
}

}  // namespace fyn::productionrules
