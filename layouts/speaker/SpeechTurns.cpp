#include "layouts/speaker/SpeechTurns.h"

#include <iterator>

#include "model/OrderBy.h"

namespace fyn::productionrules {

namespace {

constexpr std::uint32_t kKeptMs = 10000;
constexpr std::uint32_t kSpeakersKeptMs = 600000;

}  // namespace

void SpeechTurns::update(const std::set<std::int64_t>& speakers, std::uint32_t now) {
  while (!mHandovers.empty() && now - mHandovers.front().at > kKeptMs) {
    mHandovers.pop_front();
  }
  if (speakers.empty()) {
    return;
  }
  for (const std::int64_t speaker : speakers) {
    mSpokeAt[speaker] = now;
  }
  for (auto each = mSpokeAt.begin(); each != mSpokeAt.end();) {
    each = now - each->second > kSpeakersKeptMs ? mSpokeAt.erase(each) : std::next(each);
  }
  if (speakers.size() > 1 || *speakers.begin() != mHolder) {
    mAloneSince = now;
  }
  if (speakers.count(mHolder) != 0) {
    return;
  }
  if (mHolder != kNobody) {
    mHandovers.push_back({now, mHolder, *speakers.begin()});
  }
  mHolderBefore = mHolder;
  mHolder = *speakers.begin();
}

SpeechTurns::Handovers SpeechTurns::handovers(std::uint32_t ms, std::uint32_t now) const {
  Handovers recent;
  for (const Handover& handover : mHandovers) {
    if (now - handover.at <= ms) {
      ++recent.count;
      recent.persons.insert({handover.from, handover.to});
    }
  }
  return recent;
}

std::vector<std::int64_t> SpeechTurns::spokeWithin(std::uint32_t ms, std::uint32_t now) const {
  std::vector<std::int64_t> persons;
  for (const auto& [person, at] : mSpokeAt) {
    if (now - at <= ms) {
      persons.push_back(person);
    }
  }
  orderBy(persons,
          [&](std::int64_t a, std::int64_t b) { return now - mSpokeAt.at(a) < now - mSpokeAt.at(b); });
  return persons;
}

void SpeechTurns::rename(std::int64_t before, std::int64_t now) {
  const auto replace = [=](std::int64_t& person) { person = person == before ? now : person; };
  replace(mHolder);
  replace(mHolderBefore);
  for (Handover& handover : mHandovers) {
    replace(handover.from);
    replace(handover.to);
  }
  auto spoke = mSpokeAt.extract(before);
  if (!spoke.empty()) {
    mSpokeAt[now] = spoke.mapped();
  }
}

}  // namespace fyn::productionrules
