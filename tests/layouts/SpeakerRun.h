#pragma once

#include "layouts/speaker/SpeakerFramingLayout.h"
#include "model/FynCamerasConfig.h"
#include "tests/layouts/EngineRun.h"

namespace fyn::productionrules::testing {

/** A run of a speaker engine in front of one camera, `camId`, of `image` pixels. */
struct SpeakerRun : EngineRun {
  explicit SpeakerRun(Dimension image = kDefaultImageSize, std::int32_t camId = 0) : EngineRun({camId}) {
    FynCamerasConfig::getMutable().setCameraLensModelDimension(camId, image);
    engine<SpeakerFramingLayout>();
  }
};

}  // namespace fyn::productionrules::testing
