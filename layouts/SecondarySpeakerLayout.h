#pragma once

#include "layouts/BaseSecondaryLayout.h"

namespace fyn::productionrules {

/** The secondary role of speaker framing. */
class SecondarySpeakerLayout : public BaseSecondaryLayout {
 public:
  const char* getTag() const override;
};

}  // namespace fyn::productionrules
