#pragma once

#include <cstdint>
#include <random>
#include <vector>

#include "tests/testing/SceneBuilder.h"

namespace fyn::productionrules::testing {

/** On how many random meetings a property is tried that would be on `all`; a sanitizer makes each ten times
 * slower. */
constexpr std::uint32_t meetingsOf(std::uint32_t all) {
  return PR_SANITIZED ? all / 3 : all;
}

/** How many results long. */
constexpr int kMeetingSteps = 600;

/**
 * People who walk about, sit down beside each other, cross, come and go in front of some cameras. The same
 * seed gives the same meeting on every machine.
 */
class RandomMeeting {
 public:
  struct Options {
    std::int32_t maxPeople = 9;
    /** The image size of each camera, in pixels; camera ids count from 0. */
    std::vector<Dimension> cameras{{1280, 720}};
    /** How often somebody begins or ends to speak, per cent of the results. */
    std::int32_t turnsPercent = 0;
    /** How many of the heads a detector misses, per cent; then it also sees some where nobody is, and gives
     * people new numbers. */
    std::int32_t missedPercent = 0;
    /** Whether all sit in a row, close to each other, and only lean over now and then. */
    bool areSeated = false;
  };

  RandomMeeting(std::uint32_t seed, Options options) : mRandom(seed), mOptions(std::move(options)) {}

  /** The next vision result, 100 ms later. */
  Scene next();

  /** Who really was where in the latest result of a detector that misses heads. */
  const Scene& truth() const { return mTruth; }

 private:
  struct Walker {
    std::int32_t id = 0;
    /** Place in the room, in thousandths of its width and depth. */
    std::int32_t x = 0;
    std::int32_t y = 0;
    std::int32_t goalX = 0;
    std::int32_t goalY = 0;
    std::int32_t height = 0;
    bool speaks = false;
    std::int32_t seat = 0;
  };

  /** 0 to `below` - 1. */
  std::int32_t draw(std::int32_t below) {
    return static_cast<std::int32_t>(mRandom() % static_cast<std::uint32_t>(below));
  }
  void walk(Walker& walker);
  void sitDown(Walker& walker);
  void comeAndGo();
  void addTo(Scene& scene, const Walker& walker);
  void addErrors(Scene& scene);

  std::mt19937 mRandom;
  Options mOptions;
  std::vector<Walker> mWalkers;
  Scene mTruth;
  std::int32_t mLastId = 0;
  std::int64_t mFrameNumber = 0;
};

}  // namespace fyn::productionrules::testing
