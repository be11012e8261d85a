#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>

namespace fyn::productionrules {

/** Of a simulated meeting; errors that last are counted in results. */
inline constexpr std::int64_t kResultsPerSecond = 30;
/** A share of one, in the parts that shares are counted in. */
inline constexpr std::int64_t kMillion = 1'000'000;

/** How a head detector with a tracker behind it and a tagger of speakers err: shares in parts of a million,
 * lengths in results. Made by `errorsOf` and `noiseOf`. */
struct MeetingErrors {
  std::int64_t missed = 0;
  std::int64_t dropOut = 0;
  std::int64_t falseBoxes = 0;
  std::int64_t falseBoxLife = 0;
  std::int64_t jitter = 0;
  std::int64_t jitter95 = 0;
  std::int64_t newNumbers = 0;
  std::int64_t tagLate = 0;
  std::int64_t tagLateSd = 0;
  std::int64_t tagGoesOn = 0;
  std::int64_t tagGoesOnSd = 0;
  std::int64_t tagWrong = 0;
  std::int64_t tagGaps = 0;
};

/** What the number of an option counts. */
struct ErrorUnit {
  const char* name;
  /** How much of a member of MeetingErrors is 1 of the unit. */
  std::int64_t scale;
};

/** A row of the table of errors: from it come the options, the presets and the help. */
struct ErrorKind {
  const char* option;
  ErrorUnit unit;
  std::int64_t MeetingErrors::*member;
  /** In the unit, in the order of `kErrorPresets`. */
  std::array<double, 4> presets;
  double least;
  double most;
  const char* help;

  std::int64_t inParts(double value) const;
};

inline constexpr std::array<const char*, 4> kErrorPresets{"none", "low", "real", "hard"};

extern const std::array<ErrorKind, 13> kErrorKinds;

/** The errors of a preset; nothing for any other text. */
std::optional<MeetingErrors> errorsOf(const std::string& preset);

/**
 * The errors of the detector alone at a level: "none", "low", "real", "high" or a number from 0 to 1. "real"
 * (0.5) is the middle of what was measured on real detectors, "high" (1) the worst end but for what lasts.
 * Nothing for any other text.
 */
std::optional<MeetingErrors> noiseOf(const std::string& level);

}  // namespace fyn::productionrules
