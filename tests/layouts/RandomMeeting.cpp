#include "tests/layouts/RandomMeeting.h"

#include <algorithm>

namespace fyn::productionrules::testing {

Scene RandomMeeting::next() {
  comeAndGo();
  Scene scene;
  scene.frameNumber(++mFrameNumber);
  for (Walker& walker : mWalkers) {
    walk(walker);
    if (mOptions.turnsPercent > 0 && draw(100) < mOptions.turnsPercent) {
      walker.speaks = !walker.speaks;
    }
    if (mOptions.missedPercent == 0 || draw(100) >= mOptions.missedPercent) {
      addTo(scene, walker);
    }
  }
  if (mOptions.missedPercent > 0) {
    mTruth = Scene();
    for (const Walker& walker : mWalkers) {
      addTo(mTruth, walker);
    }
    addErrors(scene);
  }
  return scene;
}

void RandomMeeting::addErrors(Scene& scene) {
  if (draw(20) == 0) {
    Walker nobody;
    nobody.id = ++mLastId;
    nobody.x = draw(1000);
    nobody.y = draw(1000);
    nobody.height = 60;
    addTo(scene, nobody);
  }
  for (Walker& walker : mWalkers) {
    walker.id = draw(500) == 0 ? ++mLastId : walker.id;
  }
}

void RandomMeeting::comeAndGo() {
  if (draw(60) == 0 && static_cast<std::int32_t>(mWalkers.size()) < mOptions.maxPeople) {
    Walker walker;
    walker.id = ++mLastId;
    walker.x = draw(1000);
    walker.y = draw(1000);
    walker.goalX = walker.x;
    walker.goalY = walker.y;
    walker.height = 40 + draw(130);
    if (mOptions.areSeated) {
      sitDown(walker);
    }
    mWalkers.push_back(walker);
  }
  if (draw(150) == 0 && !mWalkers.empty()) {
    mWalkers.erase(mWalkers.begin() + draw(static_cast<std::int32_t>(mWalkers.size())));
  }
}

void RandomMeeting::sitDown(Walker& walker) {
  const auto isTaken = [&](const Walker& other) { return other.seat == walker.seat; };
  while (std::any_of(mWalkers.begin(), mWalkers.end(), isTaken)) {
    ++walker.seat;
  }
  walker.x = walker.goalX = 150 + 120 * walker.seat + draw(30);
  walker.y = walker.goalY = 400 + draw(50);
  walker.height = 70 + draw(30);
}

void RandomMeeting::walk(Walker& walker) {
  if (mOptions.areSeated) {
    walker.goalX = draw(100) == 0 ? 150 + 120 * walker.seat + draw(40) : walker.goalX;
    walker.x += std::clamp(walker.goalX - walker.x, -2, 2);
    return;
  }
  if (draw(100) == 0) {
    // Half of those who set out sit down beside somebody.
    const Walker& other =
        mWalkers[static_cast<std::size_t>(draw(static_cast<std::int32_t>(mWalkers.size())))];
    const bool joins = draw(2) == 0;
    walker.goalX = joins ? std::clamp(other.x + (draw(2) == 0 ? 110 : -110), 0, 999) : draw(1000);
    walker.goalY = joins ? other.y : draw(1000);
  }
  constexpr std::int32_t kPace = 12;
  walker.x += std::clamp(walker.goalX - walker.x, -kPace, kPace);
  walker.y += std::clamp(walker.goalY - walker.y, -kPace, kPace);
}

void RandomMeeting::addTo(Scene& scene, const Walker& walker) {
  scene.person(walker.id);
  bool seen = false;
  for (std::size_t i = 0; i < mOptions.cameras.size(); ++i) {
    const auto camera = static_cast<std::int32_t>(i);
    // A camera misses a person now and then; somebody sees everybody.
    if (draw(200) == 0 && (seen || i + 1 < mOptions.cameras.size())) {
      continue;
    }
    seen = true;
    const Dimension& image = mOptions.cameras[i];
    const std::int32_t across = (walker.x + 370 * camera) % 1000;
    const std::int32_t height = walker.height * image.height / 720;
    scene.camera(camera)
        .at(across * image.width / 1000 + draw(5), walker.y * image.height / 1000 + draw(5))
        .sized(height * 4 / 5, height)
        .speaking(walker.speaks)
        .yaw(std::abs(across - 500) / 10 + camera * 0.25);
  }
}

}  // namespace fyn::productionrules::testing
