#include "tools/report/SpeechMeter.h"

#include <iterator>

namespace fyn::productionrules {

void SpeechMeter::take(std::int64_t t, const RoomState& room) {
  for (auto entry = mTurns.begin(); entry != mTurns.end();) {
    entry->second.isSpeaking = false;
    const bool isOver = t - entry->second.end > kPauseMs;
    if (isOver) {
      endTurn(entry->second);
    }
    entry = isOver ? mTurns.erase(entry) : std::next(entry);
  }
  for (const PersonState& person : room.persons) {
    if (!person.speaks) {
      continue;
    }
    const auto [entry, isNew] = mTurns.try_emplace(person.id);
    Turn& turn = entry->second;
    if (isNew) {
      turn.start = t;
      turn.beganFramed = person.framedAsSpeaker;
    }
    turn.end = t;
    turn.isSpeaking = true;
    turn.isSingledOut = person.isSingledOut;
    turn.isClose = person.isClose;
    if (person.framedAsSpeaker && !turn.framedAfter) {
      turn.framedAfter = t - turn.start;
    }
  }
}

void SpeechMeter::last(std::int64_t t, std::int64_t time) {
  for (auto& [id, turn] : mTurns) {
    if (turn.isSpeaking) {
      turn.end = t;
      turn.speakingMs += time;
      turn.singledOutMs += turn.isSingledOut ? time : 0;
      turn.closeMs += turn.isClose ? time : 0;
    }
  }
}

void SpeechMeter::finish() {
  for (const auto& [id, turn] : mTurns) {
    endTurn(turn);
  }
}

void SpeechMeter::endTurn(const Turn& turn) {
  if (turn.end - turn.start < kShortestTurnMs) {
    return;
  }
  mMeasurement.turnMs += turn.speakingMs;
  mMeasurement.turnSingledOutMs += turn.singledOutMs;
  mMeasurement.turnCloseMs += turn.closeMs;
  // Who still speaks when the recording ends may yet be framed.
  if (!turn.beganFramed && (turn.framedAfter || !turn.isSpeaking)) {
    mMeasurement.turnToFramed.add(turn.framedAfter.value_or(turn.end - turn.start));
  }
}

}  // namespace fyn::productionrules
