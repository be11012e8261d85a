#pragma once

#include <cstdint>

namespace fyn::productionrules {

/** A camera of this type (the "/camera" document names it) zooms without a limit. */
constexpr std::int32_t kUnlimitedZoomCameraType = 5;

/** The zoom limit of group framing as a factor; 0 when there is none. */
unsigned groupZoomLimit();

/** The zoom limit of speaker framing as a factor; 0 when there is none, or the own camera needs none. */
unsigned speakerZoomLimit();

}  // namespace fyn::productionrules
