#pragma once

#include <functional>
#include <iosfwd>
#include <string>
#include <vector>

#include "tools/base/OutputRules.h"
#include "tools/meeting/Simulation.h"
#include "tools/meeting/VisionResult.h"
#include "tools/recording/RecordingWriter.h"

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace fyn::productionrules {

/** What the commands that make a meeting have in common. */
struct MeetingOptions {
  std::string output = "-";
  /** "KEY=VALUE" texts of properties that the recording begins with. */
  std::vector<std::string> properties;
  /** Whether the recording tells who really is where and speaks. */
  bool withTruth = true;
  OutputRules rules;
};

void addMeetingOptions(CLI::App& command, MeetingOptions& options);

/** The option --no-truth, of commands that know the truth. */
void addTruthOption(CLI::App& command, MeetingOptions& options);

/** Writes what stands at the start of a meeting's recording: the properties, and the cameras. */
void writeMeetingStart(RecordingWriter& writer, const MeetingOptions& options,
                       const std::vector<MeetingCamera>& cameras);

/** The option --seed. */
CLI::Option* addSeedOption(CLI::App& command, std::uint64_t& seed, const std::string& meaning);

/** The noise at a level that a user has named. Raises UsageError for one that is none. */
MeetingErrors noiseOption(const std::string& level);

/** Writes all of a simulated meeting as a recording. `tell`, which may be empty, learns how many results are
 * written. */
void writeSimulatedMeeting(std::ostream& output, Simulation& simulation, const MeetingOptions& options,
                           const std::function<void(std::int64_t done)>& tell = {});

}  // namespace fyn::productionrules
