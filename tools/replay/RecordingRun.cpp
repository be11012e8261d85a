#include "tools/replay/RecordingRun.h"

#include "tools/base/UsageError.h"

namespace fyn::productionrules {

void runRecording(RecordingReader& reader, Replay& replay,
                  const std::function<void(const RecordingEvent& event)>& beforeEvent) {
  RecordingEvent event;
  try {
    while (reader.next(event)) {
      if (beforeEvent) {
        beforeEvent(event);
      }
      replay.handle(event);
    }
  } catch (const UsageError&) {
    replay.finish();
    throw;
  }
  replay.finish();
}

}  // namespace fyn::productionrules
