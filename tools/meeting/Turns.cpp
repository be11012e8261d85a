#include "tools/meeting/Turns.h"

#include <algorithm>
#include <map>

#include "tools/meeting/CsvReader.h"

namespace fyn::productionrules {

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

std::vector<Turn> turnsFrom(const std::vector<Turn>& turns, std::int64_t from) {
  std::vector<Turn> heard;
  for (const Turn& turn : turns) {
    if (turn.end > from) {
      heard.push_back({std::max<std::int64_t>(0, turn.start - from), turn.end - from, turn.speaker});
    }
  }
  return heard;
}

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

std::vector<SpeechTurn> spokenBy(const std::vector<std::int32_t>& persons, std::vector<Turn> turns) {
  std::stable_sort(turns.begin(), turns.end(),
                   [](const Turn& a, const Turn& b) { return a.start < b.start; });
  std::map<std::string, std::int32_t> personOf;
  std::vector<SpeechTurn> spoken;
  for (const Turn& turn : turns) {
    if (personOf.count(turn.speaker) == 0 && personOf.size() < persons.size()) {
      personOf.emplace(turn.speaker, persons[personOf.size()]);
    }
    const auto person = personOf.find(turn.speaker);
    if (person != personOf.end()) {
      spoken.push_back({turn.start, turn.end, person->second});
    }
  }
  return spoken;
}

}  // namespace fyn::productionrules
