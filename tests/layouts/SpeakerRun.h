#pragma once

#include "layouts/speaker/SpeakerFramingLayout.h"
#include "model/FynCamerasConfig.h"
#include "tests/layouts/EngineRun.h"

namespace fyn::productionrules::testing {

/** A run of a speaker engine in front of one camera of `image` pixels. */
struct SpeakerRun : EngineRun {
  explicit SpeakerRun(Dimension image = kDefaultImageSize) {
    FynCamerasConfig::getMutable().setCameraLensModelDimension(0, image);
    engine<SpeakerFramingLayout>();
  }
};

}  // namespace fyn::productionrules::testing
