#pragma once

#include <memory>

#include "tools/video/vision/PersonDetector.h"
#include "tools/video/vision/VisionArguments.h"

namespace fyn::productionrules::video {

/** The detector that the arguments name, else the best that is there. Raises UsageError when what it needs
 * cannot be read. */
std::unique_ptr<PersonDetector> makeDetector(const VisionArguments& arguments);

}  // namespace fyn::productionrules::video
