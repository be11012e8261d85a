#include "tools/meeting/MeetingOptions.h"

#include <CLI/CLI.hpp>

#include "tools/base/UsageError.h"
#include "tools/meeting/TruthLines.h"
#include "tools/settings/KeyValueTexts.h"

namespace fyn::productionrules {

void addMeetingOptions(CLI::App& command, MeetingOptions& options) {
  command.add_option("-o,--output", options.output, "The recording to write; '-' is standard output")
      ->type_name("RECORDING")
      ->capture_default_str();
  addForceOption(command, options.rules);
  addPropertyOption(command, options.properties,
                    "Property that the recording sets at its start, such as vendor.talkertracking.flag=4");
}

void addTruthOption(CLI::App& command, MeetingOptions& options) {
  command.add_flag("--no-truth{false}", options.withTruth,
                   "Leave out who really is where and speaks, which 'prb report' measures against");
}

void writeMeetingStart(RecordingWriter& writer, const MeetingOptions& options,
                       const std::vector<MeetingCamera>& cameras) {
  const KeyValues properties = keyValues(options.properties);
  if (!properties.empty()) {
    writer.write({0, SetProperties{properties}});
  }
  for (BusMessage& message : cameraMessages(cameras)) {
    writer.write({0, std::move(message)});
  }
}

CLI::Option* addSeedOption(CLI::App& command, std::uint64_t& seed, const std::string& meaning) {
  return command.add_option("--seed", seed, meaning)->type_name("N")->check([](const std::string& text) {
    return text.rfind('-', 0) == 0 ? "must be 0 or more, not " + text : std::string();
  });
}

MeetingErrors noiseOption(const std::string& level) {
  const std::optional<MeetingErrors> noise = noiseOf(level);
  if (!noise) {
    throw UsageError("--noise must be none, low, real, high or a number from 0 to 1, not '" + level + "'");
  }
  return *noise;
}

void writeSimulatedMeeting(std::ostream& output, Simulation& simulation, const MeetingOptions& options,
                           const std::function<void(std::int64_t done)>& tell) {
  RecordingWriter writer(output);
  TruthLines truth(writer);
  writeMeetingStart(writer, options, simulation.cameras());
  for (std::int64_t done = 0; done < simulation.resultCount(); ++done) {
    const VisionResult result = simulation.next();
    if (options.withTruth) {
      truth.tell(result.t, simulation.truth());
    }
    writer.write({result.t, visionMessage(result, simulation.cameras())});
    if (tell) {
      tell(done + 1);
    }
  }
}

}  // namespace fyn::productionrules
