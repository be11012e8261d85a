#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <set>

#include "tests/tools/RunPrb.h"
#include "tools/meeting/Detector.h"
#include "tools/meeting/Tagger.h"

namespace fyn::productionrules::testing {
namespace {

/** By the option of the kind, in its unit. */
using Figures = std::map<std::string, double>;

double quantileOf(std::vector<double> values, std::size_t parts) {
  if (values.empty()) {
    return 0;
  }
  std::sort(values.begin(), values.end());
  return values[std::min(values.size() - 1, values.size() * parts / 100)];
}

double meanOf(const std::vector<double>& values) {
  double sum = 0;
  for (const double value : values) {
    sum += value;
  }
  return values.empty() ? 0 : sum / static_cast<double>(values.size());
}

double deviationOf(const std::vector<double>& values) {
  const double mean = meanOf(values);
  double sum = 0;
  for (const double value : values) {
    sum += (value - mean) * (value - mean);
  }
  return values.empty() ? 0 : std::sqrt(sum / static_cast<double>(values.size()));
}

/** What the detector makes of one head that stands still. */
void measureDetector(const MeetingErrors& errors, std::uint64_t seed, Figures& figures) {
  constexpr int kMeasured = 400000;
  constexpr std::int32_t kWidth = 20000;
  Detector detector(seed, 0, errors, {1280, 720});
  std::vector<double> dropOuts;
  std::vector<double> steps;
  std::map<std::int32_t, double> lives;
  std::set<std::int32_t> numbers;
  double missing = 0;
  double seen = 0;
  double wrong = 0;
  std::optional<Detector::TrackedBox> last;
  for (int result = 0; result < kMeasured; ++result) {
    const auto tracked = detector.see(1, {0, 0, kWidth, kWidth});
    if (tracked) {
      ++seen;
      numbers.insert(tracked->number);
      if (missing > 0) {
        dropOuts.push_back(missing);
      }
      if (last) {
        steps.push_back(std::abs(tracked->box.left - last->box.left) * 100.0 / kWidth);
      }
    }
    missing = tracked ? 0 : missing + 1;
    last = tracked;
    for (const Detector::FalseBox& box : detector.falseBoxes(tracked ? 1 : 0, 80)) {
      ++lives[box.id];
      ++wrong;
    }
  }
  const auto drops = static_cast<double>(dropOuts.size());
  figures["missed"] = 100 - seen / kMeasured * 100;
  figures["drop-out"] = quantileOf(dropOuts, 90);
  figures["false-boxes"] = wrong / (wrong + seen) * 100;
  figures["false-box-life"] = lives.empty() ? 0 : wrong / static_cast<double>(lives.size());
  figures["jitter"] = quantileOf(steps, 50);
  figures["jitter-p95"] = quantileOf(steps, 95);
  figures["new-numbers"] = static_cast<double>(numbers.size() - 1) / std::max(1.0, drops) * 100;
  EXPECT_EQ(quantileOf(dropOuts, 50), errors.missed == 0 ? 0 : 2);
}

/** What the tagger makes of turns of 20 seconds with pauses of 10, of four people who are there. */
void measureTagger(const MeetingErrors& errors, std::uint64_t seed, Figures& figures) {
  constexpr std::int64_t kTurns = 20000;
  const std::vector<PersonPath> paths(4, PersonPath({{0, {}}, {kTurns * 30000, {}}}));
  std::vector<SpeechTurn> turns;
  for (std::int64_t i = 0; i < kTurns; ++i) {
    turns.push_back({i * 30000, i * 30000 + 20000, static_cast<std::int32_t>(i % 4) + 1});
  }
  MeetingErrors withoutGaps = errors;
  withoutGaps.tagGaps = 0;
  std::vector<double> late;
  std::vector<double> goesOn;
  double wrong = 0;
  double whole = 0;
  for (const SpeechTurn& tag : Tagger(seed, withoutGaps).tagsOf(turns, paths)) {
    const SpeechTurn& turn = turns[static_cast<std::size_t>(tag.start / 30000)];
    late.push_back(std::round(static_cast<double>(tag.start - turn.start) * 0.03));
    goesOn.push_back(std::round(static_cast<double>(tag.end - turn.end) * 0.03));
    wrong += tag.person != turn.person ? 1 : 0;
    whole += static_cast<double>(tag.end - tag.start);
  }
  double tagged = 0;
  for (const SpeechTurn& tag : Tagger(seed, errors).tagsOf(turns, paths)) {
    tagged += static_cast<double>(tag.end - tag.start);
  }
  figures["tag-late"] = meanOf(late);
  figures["tag-late-sd"] = deviationOf(late);
  figures["tag-goes-on"] = meanOf(goesOn);
  figures["tag-goes-on-sd"] = deviationOf(goesOn);
  figures["tag-wrong"] = wrong / kTurns * 100;
  figures["tag-gaps"] = 100 - tagged / whole * 100;
}

TEST(MeetingErrors, EveryKindReachesTheRateOfEveryPreset) {
  for (std::size_t preset = 0; preset < kErrorPresets.size(); ++preset) {
    const MeetingErrors errors = *errorsOf(kErrorPresets[preset]);
    Figures figures;
    measureDetector(errors, preset + 1, figures);
    measureTagger(errors, preset + 1, figures);
    for (const ErrorKind& kind : kErrorKinds) {
      const bool lastsForNothing = preset == 0 && kind.presets[preset] > 0;
      const double wanted = lastsForNothing ? 0 : kind.presets[preset];
      EXPECT_NEAR(figures.at(kind.option), wanted, wanted * 0.12)
          << kErrorPresets[preset] << ' ' << kind.option;
    }
  }
}

TEST(MeetingErrors, AnOptionOverridesItsPresetAndNothingElse) {
  using Arguments = std::vector<std::string>;
  const Arguments perfect{"--errors",      "hard", "--missed",      "0", "--false-boxes",    "0",
                          "--jitter",      "0",    "--jitter-p95",  "0", "--tag-late",       "0",
                          "--tag-late-sd", "0",    "--tag-goes-on", "0", "--tag-goes-on-sd", "0",
                          "--tag-wrong",   "0",    "--tag-gaps",    "0"};
  const Arguments detector{"--tag-wrong", "0",    "--errors",      "none", "--jitter-p95", "3",
                           "--jitter",    "0.55", "--false-boxes", "22.5", "--missed",     "26.5"};
  const std::pair<Arguments, Arguments> same[] = {{{"--errors", "none"}, {"--noise", "none"}},
                                                  {perfect, {"--noise", "none"}},
                                                  {detector, {}},
                                                  {{"--noise", "real"}, {}}};
  const auto meetingWith = [](Arguments arguments) {
    arguments.insert(arguments.begin(), {"simulate", "--seed", "5", "--minutes", "1"});
    const PrbRun run = runPrbWith(arguments);
    EXPECT_EQ(run.status, 0) << run.err;
    return run.out;
  };
  for (const auto& [one, other] : same) {
    EXPECT_TRUE(meetingWith(one) == meetingWith(other)) << one.front() << ' ' << one[1];
  }
  const std::string real = meetingWith({"--errors", "real"});
  for (const ErrorKind& kind : kErrorKinds) {
    const std::string option = std::string("--") + kind.option;
    EXPECT_FALSE(meetingWith({"--errors", "real", option, std::to_string(kind.presets[3])}) == real)
        << option;
  }
}

}  // namespace
}  // namespace fyn::productionrules::testing
