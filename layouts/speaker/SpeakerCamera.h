#pragma once

#include <cstdint>
#include <optional>

#include "layouts/people/HeadsInView.h"

namespace fyn::productionrules {

/** Which of the cameras of the list shows who has the word. All times are ticks in milliseconds. */
class SpeakerCamera {
 public:
  /**
   * The camera for that speaker: the one that shows the speaker best. A speaker who is whole on screen begins
   * with the camera `onScreen`, and no camera is left for a better one while it shows the speaker, but when
   * the other has been better for `holdMs`. Nothing when no camera shows the speaker.
   */
  std::optional<std::uint32_t> choose(const FynHead& speaker, std::optional<std::uint32_t> onScreen,
                                      std::uint32_t holdMs, std::uint32_t now);

 private:
  std::int64_t mSpeaker = -1;
  std::uint32_t mCamId = FynHead::kNoCamera;
  /** Since when another camera has been better. */
  std::optional<std::uint32_t> mBetterSince;
};

}  // namespace fyn::productionrules
