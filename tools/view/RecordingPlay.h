#pragma once

#include <functional>

#include "tools/base/InputFile.h"
#include "tools/base/PrbContext.h"
#include "tools/replay/Replay.h"
#include "tools/view/LineLog.h"

namespace fyn::productionrules {

/**
 * Replays a recording into `log`, as fast as it can. A malformed line becomes a notice and is left out.
 * False when `isStopped`, asked often, ended it.
 */
bool playRecording(InputFile& input, ReplayOptions options, LineLog& log, PrbContext& context,
                   const std::function<bool()>& isStopped);

/**
 * Writes a recording into `log` as it is: what it holds of the service's messages is shown, nothing is
 * replayed. Otherwise as playRecording.
 */
bool showRecorded(InputFile& input, LineLog& log, PrbContext& context,
                  const std::function<bool()>& isStopped);

}  // namespace fyn::productionrules
