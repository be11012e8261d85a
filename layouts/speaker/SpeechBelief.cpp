#include "layouts/speaker/SpeechBelief.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "config/PrConfig.h"

namespace fyn::productionrules {

namespace {

// Times in milliseconds.
struct Tempo {
  /** Time constants of the level while tagged and while not. */
  double riseMs;
  double fallMs;
  /** For how long somebody must have spoken while somebody on screen goes on. */
  std::uint32_t newcomerMs;
  /** For how long somebody who is no longer tagged goes on. */
  std::uint32_t hangOverMs;
};

constexpr Tempo kUsual{400, 500, 1000, 250};
// Sooner at a speaker, and not so soon gone: gaps of a tag last up to half a second.
constexpr Tempo kSteady{150, 500, 150, 800};

const Tempo& tempo() {
  return PrConfig::get().steadyFramingEnabled ? kSteady : kUsual;
}

constexpr double kOn = 0.8;
// When nobody else can be meant.
constexpr double kOnUndisputed = 0.6;
constexpr double kOff = 0.25;
constexpr double kForgotten = 0.01;
constexpr std::uint32_t kUndisputedMs = 400;
constexpr std::uint32_t kFrozenMs = 500;

bool isWithin(const std::optional<std::uint32_t>& at, std::uint32_t ms, std::uint32_t now) {
  return at && now - *at <= ms;
}

}  // namespace

void SpeechBelief::update(const std::vector<SpeechHint>& hints, std::uint32_t now) {
  for (const SpeechHint& hint : hints) {
    Voice& voice = mVoices[hint.person];
    listen(voice, hint, now);
    mResult.push_back({&hint, &voice});
  }
  const auto tagged =
      std::count_if(hints.begin(), hints.end(), [](const SpeechHint& hint) { return hint.isTagged; });
  const auto isShownTagged = [now](const Heard& each) {
    return each.hint->isShown && isWithin(each.voice->taggedAt, kUndisputedMs - 1, now);
  };
  const double on =
      tagged == 1 && std::none_of(mResult.begin(), mResult.end(), isShownTagged) ? kOnUndisputed : kOn;
  const auto shareIn = [&](double ms) {
    return mLatest ? 1 - std::exp(-static_cast<double>(now - *mLatest) / ms) : 1;
  };
  const double rise = shareIn(tempo().riseMs);
  const double fall = shareIn(tempo().fallMs);
  for (auto& [person, voice] : mVoices) {
    if (now - voice.seenAt > kFrozenMs || voice.seenAt == now) {
      voice.level += voice.taggedAt == now ? rise * (1 - voice.level) : fall * (0 - voice.level);
    }
    voice.speaks = voice.level >= (voice.speaks ? kOff : on);
  }
  mLatest = now;
  giveTheWord(now);
  // It points to the hints of the caller.
  mResult.clear();
  for (auto each = mVoices.begin(); each != mVoices.end();) {
    const Voice& voice = each->second;
    each = voice.level < kForgotten && voice.seenAt != now ? mVoices.erase(each) : std::next(each);
  }
}

void SpeechBelief::listen(Voice& voice, const SpeechHint& hint, std::uint32_t now) {
  if (hint.isMissed) {
    return;
  }
  voice.seenAt = now;
  if (!hint.isTagged) {
    return;
  }
  if (!voice.speaks && !isWithin(voice.taggedAt, tempo().hangOverMs, now)) {
    voice.began = now;
  }
  voice.taggedAt = now;
}

void SpeechBelief::giveTheWord(std::uint32_t now) {
  mWord.clear();
  const std::uint32_t hangOverMs = tempo().hangOverMs;
  const auto goesOn = [=](const Heard& each) {
    return each.voice->speaks && isWithin(each.voice->taggedAt, hangOverMs, now);
  };
  const bool somebodyGoesOn = std::any_of(mResult.begin(), mResult.end(), goesOn);
  const bool somebodyShownGoesOn = std::any_of(
      mResult.begin(), mResult.end(), [&](const Heard& each) { return each.hint->isShown && goesOn(each); });
  for (const Heard& each : mResult) {
    const bool givesWay = somebodyGoesOn && !goesOn(each);
    const bool isEarly =
        somebodyShownGoesOn && !each.hint->isShown && speechMs(each.hint->person, now) < tempo().newcomerMs;
    if (each.voice->speaks && !givesWay && !isEarly) {
      mWord.push_back(each.hint->person);
    }
  }
  std::sort(mWord.begin(), mWord.end());
  if (!std::equal(mWord.begin(), mWord.end(), mSpeakers.begin(), mSpeakers.end())) {
    mSpeakers = {mWord.begin(), mWord.end()};
  }
}

std::uint32_t SpeechBelief::speechMs(std::int64_t person, std::uint32_t now) const {
  const auto voice = mVoices.find(person);
  return voice != mVoices.end() && voice->second.speaks ? now - voice->second.began : 0;
}

void SpeechBelief::rename(std::int64_t before, std::int64_t now) {
  auto voice = mVoices.extract(before);
  if (!voice.empty()) {
    mVoices.erase(now);
    voice.key() = now;
    mVoices.insert(std::move(voice));
  }
}

}  // namespace fyn::productionrules
