#pragma once

#include <functional>

#include "tools/recording/RecordingReader.h"
#include "tools/replay/Replay.h"

namespace fyn::productionrules {

/**
 * Replays everything that `reader` holds. What stands before a malformed line is still played; then the
 * reader's UsageError goes on. `beforeEvent` is called with each event before it is handled (progress,
 * pacing); it may be empty.
 */
void runRecording(RecordingReader& reader, Replay& replay,
                  const std::function<void(const RecordingEvent& event)>& beforeEvent = {});

}  // namespace fyn::productionrules
