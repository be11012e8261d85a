#include "layouts/people/ShotChange.h"

#include "config/PrConfig.h"
#include "geometry/Overlap.h"

namespace fyn::productionrules {

namespace {

// Intersection over union of what the pictures show: half as wide is a move, elsewhere is another shot.
constexpr double kOneShot = 0.25;
constexpr double kAlike = 0.5;

// 0 for pictures of several frames or of two cameras: nothing in them moves as one.
double likeness(const Layout& before, const Layout& after) {
  if (before.frames.size() != 1 || after.frames.size() != 1 ||
      before.frames.front().fynCamId != after.frames.front().fynCamId) {
    return 0;
  }
  return getIntersectionOverUnion(before.frames.front().source, after.frames.front().source);
}

}  // namespace

std::optional<std::string> steadyTransition(const Layout& before, const Layout& after) {
  const PrConfig& config = PrConfig::get();
  if (!config.steadyFramingEnabled) {
    return std::nullopt;
  }
  const double share = likeness(before, after);
  if (config.animationEnableEase && share >= kOneShot) {
    return "ease";
  }
  return share >= kAlike ? "dissolve" : "cut";
}

std::string steadyMove() {
  const PrConfig& config = PrConfig::get();
  return config.steadyFramingEnabled && config.animationEnableEase ? "ease" : "cut";
}

}  // namespace fyn::productionrules
