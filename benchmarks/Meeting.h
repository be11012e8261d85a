#pragma once

#include <string>

namespace fyn::productionrules::bench {

/** What differs from one result of a meeting to another. */
struct Moment {
  /** Pixels by which everybody is further to the right. */
  int shift = 0;
  /** Whether neighbours have each other's numbers; the voice stays where it is. */
  bool isSwapped = false;
};

/** A vision document as the pipeline sends it: `persons` people in rows as wide as the image, one camera, all
 * keys. The first of them speaks. */
std::string visionResult(int persons, const Moment& moment = {});

}  // namespace fyn::productionrules::bench
