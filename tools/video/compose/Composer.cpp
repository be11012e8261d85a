#include "tools/video/compose/Composer.h"

#include <algorithm>
#include <utility>

namespace fyn::productionrules::video {

namespace {

/** Starts and ends without a jerk: 3t^2 - 2t^3. */
double eased(double progress) {
  return progress * progress * (3.0 - 2.0 * progress);
}

}  // namespace

Composer::Composer(cv::Size size, std::size_t cameras, double mostEnlarged)
    : mCameras(cameras),
      mMostEnlarged(mostEnlarged),
      mTo{{0, {0, 0, 1, 1}, {0, 0, 1, 1}}},
      mOutput(size, CV_8UC3, cv::Scalar::all(0)),
      mFormer(size, CV_8UC3, cv::Scalar::all(0)) {}

void Composer::show(const StreamScene& scene, std::int64_t nowMs) {
  std::vector<Placement> wanted = placementsOf(scene, mCameras);
  const double progress = progressAt(nowMs);
  const bool isDissolving = mTransition == Transition::dissolve && progress < 1.0;
  if (mTransition == Transition::ease && progress < 1.0) {
    mFrom = between(mFrom, mTo, eased(progress));
  } else {
    mFrom = std::move(mTo);
  }
  mTo = std::move(wanted);
  mFrozen.release();
  mTransition = Transition::none;
  if (scene.durationMs <= 0 || (scene.animation != "dissolve" && scene.animation != "ease")) {
    return;
  }
  mStartMs = nowMs;
  mDurationMs = scene.durationMs;
  if (isDissolving) {
    // Two pictures at once cannot be described by tiles: the picture itself has to stand for them.
    mFrozen = mOutput.clone();
  }
  const bool glides = scene.animation == "ease" && !isDissolving && canGlide(mFrom, mTo);
  mTransition = glides ? Transition::ease : Transition::dissolve;
}

const cv::Mat& Composer::compose(const std::vector<cv::Mat>& pictures, std::int64_t nowMs) {
  const double progress = progressAt(nowMs);
  if (mTransition == Transition::none || progress >= 1.0) {
    draw(mTo, pictures, mMostEnlarged, mOutput);
  } else if (mTransition == Transition::ease) {
    draw(between(mFrom, mTo, eased(progress)), pictures, mMostEnlarged, mOutput);
  } else {
    if (mFrozen.empty()) {
      draw(mFrom, pictures, mMostEnlarged, mFormer);
    }
    draw(mTo, pictures, mMostEnlarged, mOutput);
    cv::addWeighted(mFrozen.empty() ? mFormer : mFrozen, 1.0 - progress, mOutput, progress, 0.0, mOutput);
  }
  return mOutput;
}

double Composer::progressAt(std::int64_t nowMs) const {
  if (mDurationMs <= 0) {
    return 1.0;
  }
  return std::clamp(static_cast<double>(nowMs - mStartMs) / static_cast<double>(mDurationMs), 0.0, 1.0);
}

}  // namespace fyn::productionrules::video
