#include "tools/meeting/Simulation.h"

#include <algorithm>
#include <cmath>

namespace fyn::productionrules {

namespace {

constexpr std::int64_t kFps = 30;
constexpr Dimension kImage{1280, 720};
constexpr std::int32_t kFirstFalseId = 10000;
constexpr std::int32_t kFalseIdsPerCamera = 100000;
constexpr std::uint64_t kDetectorStream = 2'000'000;

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
      mPaths(makePaths(options.seed, options.people, mDuration)),
      mSpeech(makeConversation(options.seed, mPaths, mDuration)) {
  for (std::int32_t camera = 0; camera < options.cameras; ++camera) {
    const Random random(options.seed, kDetectorStream + static_cast<std::uint64_t>(camera));
    mViews.push_back(
        {camera, Detector(random, options.noise, kImage, kFirstFalseId + camera * kFalseIdsPerCamera)});
  }
}

std::int64_t Simulation::resultCount() const {
  return mDuration * kFps / 1000;
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
    const bool isSpeaking = mSpeech.speaks(id, t);
    mTruth.heads.push_back({id, view.camera, visible, isSpeaking});
    const std::optional<Rect> box = view.detector.see(id, visible);
    if (!box) {
      continue;
    }
    ++seen;
    height = whole.bottom - whole.top;
    SeenHead head;
    head.camera = view.camera;
    head.box = clipped(*box);
    head.speaking = isSpeaking;
    if (head.speaking) {
      head.selectionBox = selectionBox(head.box);
    }
    head.yaw = turnedAway(pose.yaw);
    head.pitch = rounded(pose.pitch);
    head.score = 95 - *head.yaw / 6;
    personIn(persons, id).heads.push_back(head);
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
  result.t = mFrame * 1000 / kFps;
  result.frameNumber = ++mFrame;
  mTruth.heads.clear();
  for (View& view : mViews) {
    look(view, result.t, result.persons);
  }
  return result;
}

}  // namespace fyn::productionrules
