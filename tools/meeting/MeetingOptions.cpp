#include "tools/meeting/MeetingOptions.h"

#include <CLI/CLI.hpp>

#include "tools/prb/UsageError.h"

namespace fyn::productionrules {

void addMeetingOptions(CLI::App& command, MeetingOptions& options) {
  command.add_option("-o,--output", options.output, "The recording to write; '-' is standard output")
      ->type_name("RECORDING")
      ->capture_default_str();
  command
      .add_option("--property", options.properties,
                  "Property that the recording sets at its start, such as vendor.talkertracking.flag=4")
      ->type_name("KEY=VALUE")
      ->allow_extra_args(false);
}

std::pair<std::string, std::string> splitKeyValue(const std::string& text) {
  const std::size_t equals = text.find('=');
  if (equals == std::string::npos || equals == 0) {
    throw UsageError("'" + text + "' must be KEY=VALUE");
  }
  return {text.substr(0, equals), text.substr(equals + 1)};
}

void writeMeetingStart(RecordingWriter& writer, const MeetingOptions& options,
                       const std::vector<MeetingCamera>& cameras) {
  KeyValues properties;
  for (const std::string& text : options.properties) {
    properties.push_back(splitKeyValue(text));
  }
  if (!properties.empty()) {
    writer.write({0, SetProperties{properties}});
  }
  for (BusMessage& message : cameraMessages(cameras)) {
    writer.write({0, std::move(message)});
  }
}

}  // namespace fyn::productionrules
