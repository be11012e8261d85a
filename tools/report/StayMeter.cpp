#include "tools/report/StayMeter.h"

#include <algorithm>
#include <iterator>

namespace fyn::productionrules {

namespace {

bool isShown(const PersonState& person, const std::vector<StreamPicture>& pictures) {
  return std::any_of(pictures.begin(), pictures.end(), [&person](const StreamPicture& picture) {
    return isRoughlyShownIn(picture, person.heads);
  });
}

}  // namespace

void StayMeter::take(std::int64_t t, const RoomState& room) {
  for (auto entry = mStays.begin(); entry != mStays.end();) {
    Stay& stay = entry->second;
    stay.isThere = false;
    const bool isOver = t - stay.lastThere > kAwayMs;
    if (isOver) {
      end(entry->first, stay);
    }
    entry = isOver ? mStays.erase(entry) : std::next(entry);
  }
  for (const PersonState& person : room.persons) {
    Stay& stay = mStays[person.id];
    stay.lastThere = t;
    stay.isThere = true;
    stay.isShown = stay.isShown || isShown(person, room.pictures);
  }
}

void StayMeter::last(std::int64_t t, std::int64_t time) {
  for (auto& [id, stay] : mStays) {
    if (stay.isThere) {
      stay.lastThere = t;
      stay.time += time;
    }
  }
}

void StayMeter::finish() {
  for (const auto& [id, stay] : mStays) {
    end(id, stay);
  }
  for (const auto& [id, wasShown] : mWasShown) {
    mMeasurement.personsNeverShown += wasShown ? 0 : 1;
  }
}

void StayMeter::end(std::int64_t id, const Stay& stay) {
  mMeasurement.neverShownMs += stay.isShown ? 0 : stay.time;
  bool& wasShown = mWasShown[id];
  wasShown = wasShown || stay.isShown;
}

}  // namespace fyn::productionrules
