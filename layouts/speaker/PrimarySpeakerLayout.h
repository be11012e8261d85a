#pragma once

#include "layouts/speaker/SpeakerFramingLayout.h"

namespace fyn::productionrules {

/** The primary role of speaker framing. */
class PrimarySpeakerLayout : public SpeakerFramingLayout {
 public:
  const char* getTag() const override;
};

}  // namespace fyn::productionrules
