#include "layouts/speaker/Exchange.h"

#include <algorithm>

namespace fyn::productionrules {

namespace {

constexpr std::uint32_t kWindowMs = 10000;
constexpr unsigned kHandovers = 4;
constexpr std::size_t kMostPersons = 3;
constexpr unsigned kLivelyHandovers = 8;

// It is over when one of them has spoken alone for so long; a picture of many is not kept for long.
constexpr std::uint32_t kAloneOfTwoMs = 7000;
constexpr std::uint32_t kAloneOfManyMs = 1000;
constexpr std::uint32_t kAloneOfEverybodyMs = 3000;
constexpr std::size_t kMany = 3;

}  // namespace

void Exchange::update(const SpeechTurns& turns, const Fit& fit, std::uint32_t now) {
  if (isOn()) {
    const bool hasOutsider = !mIsOfEverybody && mPersons.count(turns.holder()) == 0;
    const std::uint32_t alone = mIsOfEverybody             ? kAloneOfEverybodyMs
                                : mPersons.size() >= kMany ? kAloneOfManyMs
                                                           : kAloneOfTwoMs;
    const bool isCalm = turns.aloneMs(now) >= alone;
    if (isCalm) {
      mCalmedAt = now;
    }
    if (isCalm || hasOutsider) {
      end();
    }
    return;
  }
  const std::uint32_t window = mCalmedAt ? std::min(kWindowMs, now - *mCalmedAt) : kWindowMs;
  const SpeechTurns::Handovers recent = turns.handovers(window, now);
  const bool isLively = recent.count >= kLivelyHandovers && recent.persons.size() >= kMany;
  if (isLively ||
      (recent.count >= kHandovers && recent.persons.size() <= kMostPersons && fit(recent.persons))) {
    begin(recent.persons);
    mIsOfEverybody = isLively;
  }
}

void Exchange::begin(const Persons& persons) {
  mPersons = persons;
  mIsOfEverybody = false;
}

void Exchange::end() {
  mPersons.clear();
  mIsOfEverybody = false;
}

void Exchange::rename(std::int64_t before, std::int64_t now) {
  if (mPersons.erase(before) != 0) {
    mPersons.insert(now);
  }
}

}  // namespace fyn::productionrules
