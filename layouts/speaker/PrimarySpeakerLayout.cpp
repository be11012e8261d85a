#include "layouts/speaker/PrimarySpeakerLayout.h"

namespace fyn::productionrules {

const char* PrimarySpeakerLayout::getTag() const {
  return "PrimarySpeakerLayout";
}

}  // namespace fyn::productionrules
