#include "layouts/SecondarySpeakerLayout.h"

namespace fyn::productionrules {

const char* SecondarySpeakerLayout::getTag() const {
  return "SecondarySpeakerLayout";
}

}  // namespace fyn::productionrules
