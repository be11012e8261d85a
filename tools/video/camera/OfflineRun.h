#pragma once

#include <string>

#include "tools/base/StopSignals.h"
#include "tools/video/camera/Player.h"

namespace fyn::productionrules::video {

/**
 * Shows the scenes of a replay's effects (JSON Lines as `prb replay` writes them) over the whole video, on
 * the replay's clock. With `vision`, the recording that was replayed, the frames are those of its vision
 * results; without, those of the video at its own rate. Raises UsageError when a file cannot be read. A wish
 * to end leaves it at what is shown by then.
 */
void playOffline(const std::string& effects, const std::string& vision, Player& player, StopSignals& stop);

}  // namespace fyn::productionrules::video
