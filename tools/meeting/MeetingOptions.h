#pragma once

#include <string>
#include <vector>

#include "tools/meeting/VisionResult.h"
#include "tools/recording/RecordingWriter.h"

namespace CLI {
class App;
}

namespace fyn::productionrules {

/** What the commands that make a meeting have in common. */
struct MeetingOptions {
  std::string output = "-";
  /** "KEY=VALUE" texts of properties that the recording begins with. */
  std::vector<std::string> properties;
};

void addMeetingOptions(CLI::App& command, MeetingOptions& options);

/** Writes what stands at the start of a meeting's recording: the properties, and the cameras. */
void writeMeetingStart(RecordingWriter& writer, const MeetingOptions& options,
                       const std::vector<MeetingCamera>& cameras);

}  // namespace fyn::productionrules
