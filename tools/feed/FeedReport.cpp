#include "tools/feed/FeedReport.h"

#include <cstdio>

#include "tools/recording/DecisionSentence.h"

namespace fyn::productionrules {

namespace {

constexpr std::int64_t kSecondMs = 1000;

/** With one place behind the point. */
std::string number(double value) {
  char text[32];
  std::snprintf(text, sizeof text, "%.1f", value);
  return text;
}

std::string percent(double value) {
  char text[32];
  std::snprintf(text, sizeof text, value < 1 ? "%.2f %%" : "%.1f %%", value);
  return text;
}

std::string feedLine(const FeedCheck& check) {
  const FeedTiming& timing = check.timing();
  std::string line = std::to_string(check.results()) + " results";
  if (timing.lengthMs() > 0) {
    line += " in " + number(static_cast<double>(timing.lengthMs()) / kSecondMs) + " s, " +
            number(timing.resultsPerSecond()) + " a second";
  }
  if (check.dropped() > 0) {
    line += "; the service drops " + std::to_string(check.dropped());
  }
  if (const auto delay = timing.delay(50)) {
    line += "; " + std::to_string(*delay) + " ms after their pictures, one in twenty " +
            std::to_string(*timing.delay(95)) + " ms";
  }
  return line;
}

std::string camerasText(const FeedCheck& check) {
  std::string text;
  for (const auto& [camera, heads] : check.heads()) {
    const Dimension size = check.cameras().imageSize(camera);
    text += (text.empty() ? "" : "; ") + std::to_string(camera) + ": " + std::to_string(size.width) + " x " +
            std::to_string(size.height) + (check.cameras().isSizeTold(camera) ? "" : " (assumed)") +
            ", heads mostly " + number(static_cast<double>(heads.heights.percentile(50).value_or(0)) / 10) +
            " % of it high";
  }
  return text.empty() ? "no head was seen" : text;
}

std::string noiseText(const DetectorNoise::Figures& noise) {
  return percent(noise.missedPercent) + " of the heads missed (one drop-out in ten longer than " +
         std::to_string(noise.dropOut90) + " results), " + std::to_string(noise.newNumbers) +
         (noise.newNumbers == 1 ? " time" : " times") + " a new number for the same person, " +
         percent(noise.falsePercent) + " boxes that flash up, jitter " + percent(noise.jitterPercent) +
         " of the width (95th percentile " + percent(noise.jitter95Percent) + ")";
}

// What each preset is for stands in 'prb config list'.
std::string fitText(const FeedCheck& check, const DetectorNoise::Figures& noise) {
  constexpr double kWalkersPercent = 10;
  constexpr double kFewWalkersPercent = 2;
  constexpr std::int64_t kLargeHead = 80;
  Distribution heights;
  for (const auto& [camera, heads] : check.heads()) {
    heights.merge(heads.heights);
  }
  const bool areLarge = heights.percentile(50).value_or(0) >= kLargeHead;
  const char* const preset = noise.walkingPercent >= kWalkersPercent                   ? "walking"
                             : noise.walkingPercent >= kFewWalkersPercent || !areLarge ? "standard"
                                                                                       : "seated";
  return "prb config preset recommended, in any mode; for group framing alone also prb config preset " +
         std::string(preset) + " (people walk for " + percent(noise.walkingPercent) + " of the time)";
}

void appendFaults(std::string& text, const FeedFaults& faults) {
  for (const FeedFaults::Kind& kind : faults.kinds()) {
    text += "fault     " + kind.text + ": " + std::to_string(kind.count) +
            (kind.count == 1 ? " time" : " times") + ", first at " + clockText(kind.firstAt) +
            (kind.example.empty() ? "" : " (" + kind.example + ")") + "\n";
  }
}

}  // namespace

std::string feedReport(const FeedCheck& check, const std::string& name) {
  const DetectorNoise::Figures noise = check.noise();
  std::string text = "feed      " + name + ": " + feedLine(check) + "\n";
  if (check.results() > 0) {
    text += "people    at the most " + std::to_string(check.mostPeople()) + " at once\ncameras   " +
            camerasText(check) + "\ndetector  " + noiseText(noise) + "\nfits      " + fitText(check, noise) +
            "\n";
    if (!check.cameras().areTold()) {
      text +=
          "note      no camera document came; a service that has got none either takes every image for 1280 "
          "x 720\n";
    }
  }
  appendFaults(text, check.faults());
  return text + (check.faults().kinds().empty() ? "no faults\n" : "");
}

}  // namespace fyn::productionrules
