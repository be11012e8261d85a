#include "layouts/PrimarySpeakerLayout.h"

namespace fyn::productionrules {

const char* PrimarySpeakerLayout::getTag() const {
  return "PrimarySpeakerLayout";
}

}  // namespace fyn::productionrules
