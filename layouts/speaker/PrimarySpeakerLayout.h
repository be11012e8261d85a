#pragma once

#include "layouts/speaker/SpeakerFramingLayout.h"

namespace fyn::productionrules {

/** The primary role of speaker framing: each speaker is taken from the camera that shows the speaker best. */
class PrimarySpeakerLayout : public SpeakerFramingLayout {
 public:
  const char* getTag() const override;

 protected:
  void addCamerasInUse(std::vector<HeadsInView>& cameras) const override;
  std::uint32_t chooseCamera(const MLData& data) override;
};

}  // namespace fyn::productionrules
