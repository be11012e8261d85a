#include "layouts/speaker/SpeakerShots.h"

namespace fyn::productionrules {

namespace {

constexpr std::uint32_t kLeastMs = 2000;
constexpr std::uint32_t kLeastBeforeReturnMs = 4000;

}  // namespace

void SpeakerShots::end(const Layout& picture) {
  mType = picture.layoutType;
  mPeople = picture.frames.front().fynHeads;
}

bool SpeakerShots::isReturn(const Layout& candidate) const {
  // A group frame that has been placed names heads, so its people tell nothing.
  return candidate.layoutType == mType &&
         (mType == FramingType::GROUP || candidate.frames.front().fynHeads == mPeople);
}

std::uint32_t SpeakerShots::leastMs(const Layout& candidate) const {
  return isReturn(candidate) ? kLeastBeforeReturnMs : kLeastMs;
}

}  // namespace fyn::productionrules
