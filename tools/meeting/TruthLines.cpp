#include "tools/meeting/TruthLines.h"

namespace fyn::productionrules {

void TruthLines::tell(std::int64_t t, const Truth& truth) {
  if (!mTold || mTold->heads != truth.heads) {
    mTold = truth;
    mWriter.write({t, truth});
  }
}

}  // namespace fyn::productionrules
