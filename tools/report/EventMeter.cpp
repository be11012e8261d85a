#include "tools/report/EventMeter.h"

#include <algorithm>
#include <cmath>

namespace fyn::productionrules {

namespace {

// The subject of a frame is off its centre when it has left the middle third.
constexpr double kOffCentre = 1.0 / 6.0;

/** Whether the heads that a frame shows stand off its centre, sideways. */
class Subjects {
 public:
  explicit Subjects(std::size_t frames) : mBoxes(frames) {}

  void add(const Appearance& appearance) {
    std::optional<Rect>& box = mBoxes[static_cast<std::size_t>(appearance.frame)];
    if (!box) {
      box = appearance.box;
    }
    box->left = std::min(box->left, appearance.box.left);
    box->right = std::max(box->right, appearance.box.right);
  }

  bool areOffCentre(const std::vector<FrameView>& frames) const {
    for (std::size_t index = 0; index < frames.size(); ++index) {
      const Rect& view = frames[index].source;
      const double width = static_cast<double>(view.right) - view.left;
      if (mBoxes[index] && std::abs(centre(*mBoxes[index]) - centre(view)) > kOffCentre * width) {
        return true;
      }
    }
    return false;
  }

 private:
  static double centre(const Rect& rect) { return (static_cast<double>(rect.left) + rect.right) / 2; }

  std::vector<std::optional<Rect>> mBoxes;
};

/** Whether a frame is too wide without the person who has left it: nobody remains in it, or those who do take
 * less of its width by more than what counts as off centre. */
bool leavesGap(const RoomState& room, int stream, const Appearance& left) {
  for (std::size_t index = 0; index < room.pictures.size(); ++index) {
    const auto frame = static_cast<std::size_t>(left.frame);
    if (room.pictures[index].stream != stream || frame >= room.pictures[index].frames.size()) {
      continue;
    }
    const Rect& view = room.pictures[index].frames[frame].source;
    std::optional<std::pair<double, double>> span;
    for (const PersonState& person : room.persons) {
      const Appearance& other = person.appearances[index];
      if (other.frame == left.frame) {
        span = {std::min<double>(span ? span->first : other.box.left, other.box.left),
                std::max<double>(span ? span->second : other.box.right, other.box.right)};
      }
    }
    const double gap =
        span ? std::max(0.0, span->first - left.box.left) + std::max(0.0, left.box.right - span->second) : 0;
    return !span || gap > kOffCentre * (static_cast<double>(view.right) - view.left);
  }
  return false;
}

}  // namespace

void EventMeter::settle(std::int64_t t, RoomEvent kind, Waiting& waiting, bool isOver, bool changed) {
  if (!waiting) {
    return;
  }
  if (isOver && changed) {
    mMeasurement.answersTo(kind).latency.add(t - *waiting);
    mMeasurement.timeLine.events.push_back({*waiting, kind, t - *waiting});
  } else if (!isOver && t - *waiting > kAnswerMs) {
    ++mMeasurement.answersTo(kind).unanswered;
    mMeasurement.timeLine.events.push_back({*waiting, kind, -1});
  } else if (!isOver) {
    return;
  }
  waiting.reset();
}

void EventMeter::see(std::int64_t t, const RoomState& room) {
  for (const PersonState& person : room.persons) {
    notice(t, person);
  }
  mHasStarted = true;
  takeAll(t, room, {}, {});
}

void EventMeter::change(std::int64_t t, const RoomState& room, const std::set<int>& changed,
                        const std::set<int>& decided) {
  takeAll(t, room, changed, decided);
}

void EventMeter::notice(std::int64_t t, const PersonState& person) {
  const auto [entry, isNew] = mPeople.try_emplace(person.id);
  Known& known = entry->second;
  if (isNew || t - known.lastSeen > kAwayMs) {
    // Who is there when the recording begins has not come in.
    known.join = mHasStarted ? Waiting(t) : Waiting();
    known.firstSeen = t;
  }
  known.lastSeen = t;
  known.leave.reset();
  if (person.speaks) {
    if (!known.lastSpoke || t - *known.lastSpoke > kSilenceMs) {
      known.speak = t;
    }
    known.lastSpoke = t;
  } else if (known.lastSpoke && t - *known.lastSpoke > kSilenceMs) {
    known.speak.reset();
  }
}

void EventMeter::takeAll(std::int64_t t, const RoomState& room, const std::set<int>& changed,
                         const std::set<int>& decided) {
  // A layout that was decided after somebody has left is made for those who stayed, even if it looks the
  // same.
  std::set<int> renewed = changed;
  renewed.insert(decided.begin(), decided.end());
  for (const PersonState& person : room.persons) {
    takePresent(t, room, person, !changed.empty());
  }
  auto present = room.persons.begin();  // in the order of mPeople, too
  for (auto entry = mPeople.begin(); entry != mPeople.end();) {
    Known& known = entry->second;
    while (present != room.persons.end() && present->id < entry->first) {
      ++present;
    }
    const bool isAbsent = present == room.persons.end() || present->id != entry->first;
    if (isAbsent) {
      takeAbsent(t, room, known, renewed);
    }
    const bool isForgotten = isAbsent && t - known.lastSeen > kAwayMs && !known.leave;
    entry = isForgotten ? mPeople.erase(entry) : std::next(entry);
  }
  for (std::size_t index = 0; index < room.pictures.size(); ++index) {
    takeStream(t, room, index, changed.count(room.pictures[index].stream) != 0);
  }
}

void EventMeter::takePresent(std::int64_t t, const RoomState& room, const PersonState& person, bool changed) {
  Known& known = mPeople[person.id];
  if (!room.owesNewcomers) {
    known.join.reset();
  }
  settle(t, RoomEvent::Join, known.join, person.visibility == Visibility::InView, changed);
  settle(t, RoomEvent::Speak, known.speak, person.framedAsSpeaker, changed);
  known.shownBy.clear();
  for (std::size_t stream = 0; stream < room.pictures.size(); ++stream) {
    if (person.appearances[stream].frame >= 0) {
      known.shownBy.emplace_back(room.pictures[stream].stream, person.appearances[stream]);
    }
  }
}

void EventMeter::takeAbsent(std::int64_t t, const RoomState& room, Known& known,
                            const std::set<int>& renewed) {
  known.join.reset();
  known.speak.reset();
  if (!known.leave && !known.shownBy.empty()) {
    if (known.lastSeen - known.firstSeen < kPresentMs) {
      known.shownBy.clear();
    }
    const auto filled = [&room](const auto& shown) { return !leavesGap(room, shown.first, shown.second); };
    known.shownBy.erase(std::remove_if(known.shownBy.begin(), known.shownBy.end(), filled),
                        known.shownBy.end());
    known.leave = known.shownBy.empty() ? Waiting() : Waiting(t);
  }
  const bool isAnswered =
      std::any_of(known.shownBy.begin(), known.shownBy.end(),
                  [&renewed](const auto& shown) { return renewed.count(shown.first) != 0; });
  settle(t, RoomEvent::Leave, known.leave, isAnswered, isAnswered);
  if (!known.leave) {
    known.shownBy.clear();
  }
}

void EventMeter::takeStream(std::int64_t t, const RoomState& room, std::size_t index, bool changed) {
  const StreamPicture& picture = room.pictures[index];
  Stream& stream = mStreams[picture.stream];
  if (changed) {
    settle(t, RoomEvent::OffCentre, stream.offCentre, true, true);
    stream.members.clear();
    stream.wasInPlace = false;
  }
  bool isOff = false;
  Subjects subjects(picture.frames.size());
  for (const PersonState& person : room.persons) {
    const Appearance& appearance = person.appearances[index];
    if (appearance.visibility == Visibility::InView) {
      stream.members.insert(person.id);
    } else if (stream.members.count(person.id) != 0) {
      isOff = true;
    }
    if (appearance.frame >= 0) {
      subjects.add(appearance);
    }
  }
  isOff = isOff || subjects.areOffCentre(picture.frames);
  if (isOff && stream.wasInPlace) {
    stream.offCentre = t;
  }
  stream.wasInPlace = !isOff;
  settle(t, RoomEvent::OffCentre, stream.offCentre, !isOff, false);
}

}  // namespace fyn::productionrules
