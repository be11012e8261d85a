#include "tools/meeting/Simulation.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "tools/meeting/Tagger.h"

namespace fyn::productionrules {

namespace {

constexpr Dimension kImage{1280, 720};

HeadPose projected(const HeadPose& pose, std::int32_t camera) {
  if (camera == 0) {
    return pose;
  }
  const double scale = camera % 2 == 1 ? 0.85 : 1.15;
  const double shift = (camera % 2 == 1 ? 110.0 : -110.0) * camera;
  HeadPose seen = pose;
  seen.x = kImage.width / 2.0 + (pose.x - kImage.width / 2.0) * scale + shift;
  seen.y = kImage.height / 2.0 + (pose.y - kImage.height / 2.0) * scale;
  seen.height = pose.height * scale;
  seen.yaw = pose.yaw - (camera % 2 == 1 ? 35.0 : -35.0) * camera;
  return seen;
}

std::int32_t rounded(double value) {
  return static_cast<std::int32_t>(std::floor(value + 0.5));
}

Rect boxOf(const HeadPose& pose) {
  const double width = pose.height * 0.75;
  return {rounded(pose.x - width / 2), rounded(pose.y - pose.height / 2), rounded(pose.x + width / 2),
          rounded(pose.y + pose.height / 2)};
}

Rect clipped(const Rect& box) {
  return {std::clamp(box.left, 0, kImage.width), std::clamp(box.top, 0, kImage.height),
          std::clamp(box.right, 0, kImage.width), std::clamp(box.bottom, 0, kImage.height)};
}

/** A detector needs at least half of a head. */
bool isInView(const Rect& box, const Rect& visible) {
  return (visible.right - visible.left) * 2 >= box.right - box.left &&
         (visible.bottom - visible.top) * 2 >= box.bottom - box.top;
}

/** The upper body of a speaker. */
Rect selectionBox(const Rect& head) {
  const std::int32_t width = head.right - head.left;
  const std::int32_t height = head.bottom - head.top;
  return clipped({head.left - width, head.top - height / 2, head.right + width, head.bottom + 2 * height});
}

/** Between two directions, 0 to 180 degrees. */
int turnedAway(double yaw) {
  const int degrees = static_cast<int>(std::abs(rounded(yaw))) % 360;
  return degrees > 180 ? 360 - degrees : degrees;
}

SeenPerson& personIn(std::vector<SeenPerson>& persons, std::int32_t id) {
  const auto known = std::find_if(persons.begin(), persons.end(),
                                  [id](const SeenPerson& person) { return person.id == id; });
  if (known != persons.end()) {
    return *known;
  }
  persons.push_back({id, {}});
  return persons.back();
}

}  // namespace

Simulation::Simulation(const SimulationOptions& options)
    : mOptions(options),
      mDuration(std::int64_t{options.minutes} * 60000),
      mCameras(static_cast<std::size_t>(options.cameras), MeetingCamera{kImage}),
      mPaths(options.seating == nullptr ? makePaths(options.seed, options.people, mDuration)
                                        : std::vector<PersonPath>()) {
  std::vector<PersonPath> passersBy;
  if (options.seating != nullptr) {
    const SeatedMeeting meeting(options.seed, *options.seating, options.people, options.movements, mDuration);
    mPaths = meeting.people();
    passersBy = meeting.passersBy();
  }
  const std::vector<SpeechTurn> turns = conversation();
  mSpeech = Speech(turns);
  mTags = Speech(Tagger(options.seed, options.errors).tagsOf(turns, mPaths));
  mPaths.insert(mPaths.end(), passersBy.begin(), passersBy.end());
  for (std::int32_t camera = 0; camera < options.cameras; ++camera) {
    mViews.push_back({camera, Detector(options.seed, camera, options.errors, kImage)});
  }
}

std::vector<SpeechTurn> Simulation::conversation() const {
  if (mOptions.turns) {
    std::vector<std::int32_t> persons(mPaths.size());
    std::iota(persons.begin(), persons.end(), 1);
    return spokenBy(persons, *mOptions.turns);
  }
  std::vector<SpeechTurn> turns = makeConversation(mOptions.seed, mPaths, mDuration);
  if (mOptions.overlap > 0) {
    addOverlap(mOptions.seed, mPaths, mOptions.overlap, turns);
  }
  return turns;
}

std::int64_t Simulation::resultCount() const {
  return mDuration * kResultsPerSecond / 1000;
}

void Simulation::look(View& view, std::int64_t t, std::vector<SeenPerson>& persons) {
  std::size_t seen = 0;
  std::int32_t height = 0;
  for (std::size_t index = 0; index < mPaths.size(); ++index) {
    const HeadPose pose = projected(mPaths[index].poseAt(t), view.camera);
    const Rect whole = boxOf(pose);
    const Rect visible = clipped(whole);
    if (!mPaths[index].isThere(t) || !isInView(whole, visible)) {
      continue;
    }
    const auto id = static_cast<std::int32_t>(index) + 1;
    mTruth.heads.push_back({id, view.camera, visible, mSpeech.speaks(id, t)});
    const auto tracked = view.detector.see(id, visible);
    if (!tracked) {
      continue;
    }
    ++seen;
    height = whole.bottom - whole.top;
    SeenHead head;
    head.camera = view.camera;
    head.box = clipped(tracked->box);
    head.speaking = mTags.speaks(id, t);
    if (head.speaking) {
      head.selectionBox = selectionBox(head.box);
    }
    head.yaw = turnedAway(pose.yaw);
    head.pitch = rounded(pose.pitch);
    head.score = 95 - *head.yaw / 6;
    personIn(persons, tracked->number).heads.push_back(head);
  }
  for (const Detector::FalseBox& wrong : view.detector.falseBoxes(seen, height)) {
    SeenHead head;
    head.camera = view.camera;
    head.box = wrong.box;
    head.yaw = 90;
    head.pitch = 0;
    head.score = 40;
    personIn(persons, wrong.id).heads.push_back(head);
  }
}

VisionResult Simulation::next() {
  VisionResult result;
  result.t = mFrame * 1000 / kResultsPerSecond;
  result.frameNumber = ++mFrame;
  mTruth.heads.clear();
  for (View& view : mViews) {
    look(view, result.t, result.persons);
  }
  return result;
}

}  // namespace fyn::productionrules
