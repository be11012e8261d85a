#include "tools/report/ChangeMeter.h"

#include <utility>

namespace fyn::productionrules {

void ChangeMeter::show(std::int64_t t, const StreamPicture& picture, bool decided) {
  const auto [entry, isFirst] = mStreams.try_emplace(picture.stream);
  Shown& shown = entry->second;
  if (isFirst) {
    shown.picture = picture;
    mMeasurement.timeLine.changes.push_back({t, picture.stream, picture.type, true});
    return;
  }
  const bool ofLayout = decided || !haveSameArrangement(shown.picture, picture);
  ++(ofLayout ? mMeasurement.layoutChanges : mMeasurement.reframes);
  mMeasurement.timeLine.changes.push_back({t, picture.stream, picture.type, ofLayout});
  if (shown.changedAt) {
    mMeasurement.betweenChanges.add(t - *shown.changedAt);
    if (t - *shown.changedAt <= kFlickerMs && lookAlike(*shown.before, picture)) {
      ++mMeasurement.flickers;
    }
  }
  shown.changedAt = t;
  shown.before = std::exchange(shown.picture, picture);
}

}  // namespace fyn::productionrules
