#include "layouts/speaker/SpeakerFramingData.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <utility>

#include "config/PrConfig.h"

namespace fyn::productionrules {

namespace {

// More samples than this are not kept, whatever the configuration says: half a minute at 30 results a second.
constexpr std::int32_t kMostSamples = 1000;

// One speaker follows another, or somebody throws in a word: the word passes on as often as this within the
// samples. A tag that moves more often wanders.
constexpr int kMostHandovers = 3;

template <typename Samples>
int handoversIn(const Samples& samples) {
  int handovers = 0;
  for (std::size_t i = 1; i < samples.size(); ++i) {
    handovers += samples[i].person != samples[i - 1].person ? 1 : 0;
  }
  return handovers;
}

}  // namespace

void SpeakerFramingData::update(bool isAnybodyInView, const std::vector<std::shared_ptr<FynHead>>& speakers,
                                std::uint32_t camId, bool pictureShowsSpeaker, const TickFunction& tick) {
  mSpeakers = speakers;
  updateActiveSpeaker();
  if (!PrConfig::get().sfRecoveryMode) {
    startAfresh();
    return;
  }
  if (isRecovering()) {
    if (!isTimerExpire(mRecoveryTimer, tick)) {
      return;
    }
    startAfresh();
  }
  const std::uint32_t now = tick();
  checkPosition(camId, now);
  checkTags(isAnybodyInView, pictureShowsSpeaker, now);
}

std::string SpeakerFramingData::debugText(std::uint32_t now) const {
  return R"(, "activeSpeaker":)" + std::to_string(mActiveSpeaker) + R"(, "recovery":")" + mRecoveryReason +
         R"(", "recoveryRemainingMs":)" + std::to_string(remainingMs(mRecoveryTimer, now));
}

void SpeakerFramingData::updateActiveSpeaker() {
  const bool stillSpeaks = std::any_of(mSpeakers.begin(), mSpeakers.end(),
                                       [this](const auto& speaker) { return speaker->id == mActiveSpeaker; });
  if (!stillSpeaks) {
    mActiveSpeaker = mSpeakers.empty() ? kNobody : mSpeakers.front()->id;
  }
}

void SpeakerFramingData::checkPosition(std::uint32_t camId, std::uint32_t now) {
  const PrConfig& config = PrConfig::get();
  if (!config.sfRecoveryModeStdDev || config.stdDeviationDequeSize <= 0) {
    mCentres.clear();
    mUnsteadyTicks.clear();
    return;
  }
  const auto window = static_cast<std::uint32_t>(config.timersSfRecoveryDetectWindow);
  while (!mUnsteadyTicks.empty() && now - mUnsteadyTicks.front() > window) {
    mUnsteadyTicks.pop_front();
  }
  const auto speaker = std::find_if(mSpeakers.begin(), mSpeakers.end(),
                                    [this](const auto& person) { return person->id == mActiveSpeaker; });
  if (speaker == mSpeakers.end()) {
    return;
  }
  const Rect& box = (*speaker)->findHead(camId)->bbox;
  mCentres.push_back(
      {mActiveSpeaker, (double{1} * box.left + box.right) / 2, (double{1} * box.top + box.bottom) / 2});
  const auto size = static_cast<std::size_t>(std::min(config.stdDeviationDequeSize, kMostSamples));
  while (mCentres.size() > size) {
    mCentres.pop_front();
  }
  if (mCentres.size() < size || deviationOf(mCentres) <= config.stdDeviationThreshold) {
    return;
  }
  const std::int32_t allowed = std::clamp(config.stdDeviationOverThreshold, 0, kMostSamples);
  mUnsteadyTicks.push_back(now);
  if (mUnsteadyTicks.size() > static_cast<std::size_t>(allowed)) {
    startRecovery("recovery: unsteady speaker position", now);
  }
}

void SpeakerFramingData::checkTags(bool anybodyInView, bool pictureShowsSpeaker, std::uint32_t now) {
  const PrConfig& config = PrConfig::get();
  if (!config.sfRecoveryModeNoHeadTagged || !anybodyInView || !mSpeakers.empty() || !pictureShowsSpeaker) {
    mUntaggedResults = 0;
    return;
  }
  ++mUntaggedResults;
  if (mUntaggedResults >= config.realHeadCounterMax) {
    startRecovery("recovery: nobody tagged", now);
  }
}

void SpeakerFramingData::startRecovery(const char* reason, std::uint32_t now) {
  startAfresh();
  mRecoveryTimer = getTimer(static_cast<std::uint32_t>(PrConfig::get().timersSfRecoveryMode), now);
  mRecoveryReason = reason;
}

void SpeakerFramingData::startAfresh() {
  mCentres.clear();
  mUnsteadyTicks.clear();
  mUntaggedResults = 0;
  resetTimer(mRecoveryTimer);
  mRecoveryReason = "";
}

// Root of the mean squared distance from the mean point, in pixels. The word passes from one head to another,
// which moves the samples as well; unless it wanders, each head's steadiness counts for itself.
double SpeakerFramingData::deviationOf(const std::deque<Sample>& samples) {
  const bool isPerHead = handoversIn(samples) <= kMostHandovers;
  struct Sum {
    double count = 0;
    double x = 0;
    double y = 0;
  };
  std::map<std::int64_t, Sum> sums;
  const auto sumOf = [&](const Sample& sample) -> Sum& { return sums[isPerHead ? sample.person : kNobody]; };
  for (const Sample& sample : samples) {
    Sum& sum = sumOf(sample);
    ++sum.count;
    sum.x += sample.x;
    sum.y += sample.y;
  }
  double squares = 0;
  for (const Sample& sample : samples) {
    const Sum& sum = sumOf(sample);
    const double dx = sample.x - sum.x / sum.count;
    const double dy = sample.y - sum.y / sum.count;
    squares += dx * dx + dy * dy;
  }
  return std::sqrt(squares / static_cast<double>(samples.size()));
}

}  // namespace fyn::productionrules
