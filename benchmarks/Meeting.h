#pragma once

#include <string>

namespace fyn::productionrules::bench {

/** A vision document as the pipeline sends it: `persons` people in rows, one camera, all keys. `shift` moves
 * everybody by that many pixels to the right. */
std::string visionResult(int persons, int frameNumber, int shift = 0);

}  // namespace fyn::productionrules::bench
