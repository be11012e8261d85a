#include "tools/meeting/MeetingErrors.h"

#include <algorithm>
#include <cmath>

namespace fyn::productionrules {

namespace {

constexpr ErrorUnit kPercent{"PERCENT", kMillion / 100};
constexpr ErrorUnit kResults{"RESULTS", 1};

enum Preset : std::size_t { kNone, kLow, kReal, kHard };

constexpr std::array<std::pair<const char*, std::int64_t>, 4> kLevels{
    {{"none", 0}, {"low", 100'000}, {"real", 500'000}, {"high", kMillion}}};

constexpr std::int64_t MeetingErrors::*kOfALevel[] = {&MeetingErrors::missed, &MeetingErrors::falseBoxes,
                                                      &MeetingErrors::jitter, &MeetingErrors::jitter95};

MeetingErrors errorsOf(Preset preset) {
  MeetingErrors errors;
  for (const ErrorKind& kind : kErrorKinds) {
    errors.*kind.member = kind.inParts(kind.presets[preset]);
  }
  return errors;
}

std::int64_t blend(std::int64_t a, std::int64_t b, std::int64_t parts) {
  return a + (b - a) * parts / kMillion;
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

}  // namespace

// Measured on real detectors: recall 0.71 to 0.76, drop-outs with a 90th percentile of 20 to 36 results,
// false boxes 7 to 38 %, jitter with a median of 0.2 to 0.9 % and a 95th percentile of 2 to 4 %; on a real
// tagger: 8 results late (standard deviation 3), 12 too long (4), wrong in 3 % of the turns. The rest is
// guessed.
const std::array<ErrorKind, 13> kErrorKinds{{
    {"missed",
     kPercent,
     &MeetingErrors::missed,
     {0, 5.3, 26.5, 29},
     0,
     50,
     "Heads in view that the detector misses"},
    {"drop-out",
     kResults,
     &MeetingErrors::dropOut,
     {28, 10, 28, 36},
     4,
     900,
     "How long a head stays missed: one time in ten longer than this; in the median always 2 results"},
    {"false-boxes",
     kPercent,
     &MeetingErrors::falseBoxes,
     {0, 4.5, 22.5, 38},
     0,
     50,
     "Reported boxes that are no head"},
    {"false-box-life",
     kResults,
     &MeetingErrors::falseBoxLife,
     {16, 4, 16, 40},
     1,
     900,
     "How long a false box lives, on average: most flash up, a few stay"},
    {"jitter",
     kPercent,
     &MeetingErrors::jitter,
     {0, 0.11, 0.55, 0.9},
     0,
     5,
     "Movement of a still head's box from one result to the next, of its width: median"},
    {"jitter-p95", kPercent, &MeetingErrors::jitter95, {0, 0.6, 3, 4}, 0, 20, "The same: 95th percentile"},
    {"new-numbers",
     kPercent,
     &MeetingErrors::newNumbers,
     {0, 1, 4, 10},
     0,
     100,
     "Drop-outs after which the tracker takes the person for somebody new"},
    {"tag-late",
     kResults,
     &MeetingErrors::tagLate,
     {0, 4, 8, 15},
     0,
     300,
     "How long after the beginning of a turn its speaker is tagged: mean"},
    {"tag-late-sd",
     kResults,
     &MeetingErrors::tagLateSd,
     {0, 1, 3, 6},
     0,
     100,
     "The same: standard deviation"},
    {"tag-goes-on",
     kResults,
     &MeetingErrors::tagGoesOn,
     {0, 6, 12, 20},
     0,
     300,
     "How long the tag stays after the end of a turn: mean"},
    {"tag-goes-on-sd",
     kResults,
     &MeetingErrors::tagGoesOnSd,
     {0, 2, 4, 8},
     0,
     100,
     "The same: standard deviation"},
    {"tag-wrong",
     kPercent,
     &MeetingErrors::tagWrong,
     {0, 1, 3, 8},
     0,
     100,
     "Turns in which the tag is on somebody else"},
    {"tag-gaps",
     kPercent,
     &MeetingErrors::tagGaps,
     {0, 1, 5, 15},
     0,
     90,
     "Time of a tag in which it is missing, for 4 to 15 results on end"},
}};

std::int64_t ErrorKind::inParts(double value) const {
  return std::llround(value * static_cast<double>(unit.scale));
}

std::optional<MeetingErrors> errorsOf(const std::string& preset) {
  const auto* const found = std::find(kErrorPresets.begin(), kErrorPresets.end(), preset);
  return found == kErrorPresets.end()
             ? std::nullopt
             : std::optional(errorsOf(static_cast<Preset>(found - kErrorPresets.begin())));
}

std::optional<MeetingErrors> noiseOf(const std::string& level) {
  const std::optional<std::int64_t> parts = levelParts(level);
  if (!parts) {
    return std::nullopt;
  }
  constexpr std::int64_t kHalf = kMillion / 2;
  const bool isLowHalf = *parts <= kHalf;
  const MeetingErrors from = errorsOf(isLowHalf ? kNone : kReal);
  const MeetingErrors to = errorsOf(isLowHalf ? kReal : kHard);
  MeetingErrors errors = errorsOf(kNone);
  for (const auto member : kOfALevel) {
    errors.*member = blend(from.*member, to.*member, (isLowHalf ? *parts : *parts - kHalf) * 2);
  }
  return errors;
}

}  // namespace fyn::productionrules
