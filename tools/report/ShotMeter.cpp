#include "tools/report/ShotMeter.h"

#include <algorithm>
#include <utility>

namespace fyn::productionrules {

namespace {

std::set<std::int64_t> idsOf(const RoomState& room) {
  std::set<std::int64_t> ids;
  for (const PersonState& person : room.persons) {
    ids.insert(person.id);
  }
  return ids;
}

template <typename Contents>
bool showSamePeople(const Contents& a, const Contents& b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](const auto& one, const auto& other) {
    return one.camera == other.camera && one.people == other.people;
  });
}

/** The tiles are the same, and somebody is in another of them. */
template <typename Contents>
bool isHop(const Contents& before, const Contents& now) {
  bool somebodyMoved = false;
  const bool haveSameTiles = std::equal(
      before.begin(), before.end(), now.begin(), now.end(), [&](const auto& one, const auto& other) {
        somebodyMoved =
            somebodyMoved || std::any_of(one.people.begin(), one.people.end(), [&](std::int64_t person) {
              return other.people.count(person) == 0 &&
                     std::any_of(now.begin(), now.end(),
                                 [&](const auto& tile) { return tile.people.count(person) != 0; });
            });
        return one.dest == other.dest;
      });
  return haveSameTiles && somebodyMoved;
}

}  // namespace

std::vector<ShotMeter::Content> ShotMeter::contentOf(const RoomState& room, std::size_t stream) {
  std::vector<Content> contents;
  for (const FrameView& frame : room.pictures[stream].frames) {
    contents.push_back({frame.camera, frame.dest, {}});
  }
  for (const PersonState& person : room.persons) {
    if (const int frame = person.appearances[stream].frame; frame >= 0) {
      contents[static_cast<std::size_t>(frame)].people.insert(person.id);
    }
  }
  return contents;
}

void ShotMeter::leave(const RoomState& room, const std::set<int>& changed) {
  for (std::size_t stream = 0; stream < room.pictures.size(); ++stream) {
    if (changed.count(room.pictures[stream].stream) != 0) {
      mShots[room.pictures[stream].stream].left = contentOf(room, stream);
    }
  }
}

void ShotMeter::show(std::int64_t t, const RoomState& room, const std::set<int>& changed) {
  for (std::size_t stream = 0; stream < room.pictures.size(); ++stream) {
    const StreamPicture& picture = room.pictures[stream];
    if (changed.count(picture.stream) == 0) {
      continue;
    }
    Shot& shot = mShots[picture.stream];
    const bool isFirst = shot.picture.frames.empty();
    const StreamPicture before = std::exchange(shot.picture, picture);
    const std::set<std::int64_t> roomBefore = std::exchange(shot.room, idsOf(room));
    if (isFirst) {
      shot.began = t;
      continue;
    }
    if (!lookAlike(before, picture)) {
      mMeasurement.shotLength.add(t - std::exchange(shot.began, t));
    }
    const std::vector<Content> now = contentOf(room, stream);
    mMeasurement.tileHops += roomBefore == shot.room && isHop(shot.left, now) ? 1 : 0;
    cut(t, shot, now);
  }
}

void ShotMeter::cut(std::int64_t t, Shot& shot, const std::vector<Content>& now) {
  if (showSamePeople(shot.left, now)) {
    return;
  }
  if (shot.before && t - shot.cutAt < kThereAndBackMs && showSamePeople(*shot.before, now)) {
    ++mMeasurement.thereAndBacks;
  }
  shot.before = std::move(shot.left);
  shot.cutAt = t;
}

}  // namespace fyn::productionrules
