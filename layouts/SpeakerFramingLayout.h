#pragma once

#include "layouts/BaseLayout.h"

namespace fyn::productionrules {

/** The picture follows who speaks. Its log lines keep the tag of the base. */
class SpeakerFramingLayout : public BaseLayout {};

}  // namespace fyn::productionrules
