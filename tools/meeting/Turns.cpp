#include "tools/meeting/Turns.h"

#include <algorithm>

#include "tools/meeting/CsvReader.h"

namespace fyn::productionrules {

namespace {

std::vector<std::int32_t> personsByPresence(const std::vector<CameraTracks>& cameras) {
  std::map<std::int32_t, std::int64_t> frames;
  for (const CameraTracks& camera : cameras) {
    for (const auto& [time, heads] : camera.frames) {
      for (const TrackedHead& head : heads) {
        ++frames[head.person];
      }
    }
  }
  std::vector<std::int32_t> persons;
  persons.reserve(frames.size());
  for (const auto& [person, count] : frames) {
    persons.push_back(person);
  }
  std::stable_sort(persons.begin(), persons.end(),
                   [&frames](std::int32_t a, std::int32_t b) { return frames.at(a) > frames.at(b); });
  return persons;
}

}  // namespace

std::vector<Turn> readTurns(std::istream& input, const std::string& name) {
  CsvReader rows(input, name, {"start_ms", "end_ms", "speaker"});
  std::vector<Turn> turns;
  while (rows.next()) {
    Turn turn{rows.integer(0, 0, kLongestRecordingMs), rows.integer(1, 0, kLongestRecordingMs),
              std::string(rows.text(2))};
    if (turn.end <= turn.start) {
      rows.fail("a turn must end after its start");
    }
    if (turn.speaker.empty()) {
      rows.fail("the speaker is missing");
    }
    turns.push_back(std::move(turn));
  }
  return turns;
}

Speech::Speech(const std::vector<Turn>& turns, const std::vector<CameraTracks>& cameras) {
  std::vector<Turn> ordered = turns;
  std::stable_sort(ordered.begin(), ordered.end(),
                   [](const Turn& a, const Turn& b) { return a.start < b.start; });
  const std::vector<std::int32_t> persons = personsByPresence(cameras);
  std::map<std::string, std::int32_t> personOf;
  for (const Turn& turn : ordered) {
    if (personOf.count(turn.speaker) == 0 && personOf.size() < persons.size()) {
      personOf.emplace(turn.speaker, persons[personOf.size()]);
    }
    const auto person = personOf.find(turn.speaker);
    if (person != personOf.end()) {
      mTurns[person->second].emplace_back(turn.start, turn.end);
    }
  }
}

bool Speech::speaks(std::int32_t person, std::int64_t t) const {
  const auto turns = mTurns.find(person);
  return turns != mTurns.end() &&
         std::any_of(turns->second.begin(), turns->second.end(),
                     [t](const auto& turn) { return turn.first <= t && t < turn.second; });
}

}  // namespace fyn::productionrules
