#pragma once

#include "layouts/cycle/WaitRule.h"

namespace fyn::productionrules {

/** The wait of speaker framing for a change between two types of layout; null for a type that it never
 * shows. */
const WaitRule* findSpeakerWait(FramingType from, FramingType to);

}  // namespace fyn::productionrules
