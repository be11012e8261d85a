#include "layouts/speaker/SpeakerCamera.h"

#include <algorithm>

#include "model/FynCamerasConfig.h"

namespace fyn::productionrules {

namespace {

bool shows(std::uint32_t camId, const FynHead& person) {
  return FynCamerasConfig::get().fynCamInfoMap.count(static_cast<std::int32_t>(camId)) != 0 &&
         headsToFollow(camId).find(person) != nullptr;
}

}  // namespace

std::optional<std::uint32_t> SpeakerCamera::choose(const FynHead& speaker,
                                                   std::optional<std::uint32_t> onScreen,
                                                   std::uint32_t holdMs, std::uint32_t now) {
  const auto best = std::find_if(speaker.feedPriorityList.begin(), speaker.feedPriorityList.end(),
                                 [&](std::uint32_t camId) { return shows(camId, speaker); });
  if (best == speaker.feedPriorityList.end()) {
    return std::nullopt;
  }
  if (speaker.id != mSpeaker) {
    mSpeaker = speaker.id;
    mCamId = onScreen.value_or(*best);
    mBetterSince.reset();
  }
  if (*best == mCamId) {
    mBetterSince.reset();
  } else if (!mBetterSince) {
    mBetterSince = now;
  }
  if (!shows(mCamId, speaker) || (mBetterSince && now - *mBetterSince >= holdMs)) {
    mCamId = *best;
    mBetterSince.reset();
  }
  return mCamId;
}

}  // namespace fyn::productionrules
