#include "tools/meeting/MeetingOptions.h"

#include <CLI/CLI.hpp>

#include "tools/settings/KeyValueTexts.h"

namespace fyn::productionrules {

void addMeetingOptions(CLI::App& command, MeetingOptions& options) {
  command.add_option("-o,--output", options.output, "The recording to write; '-' is standard output")
      ->type_name("RECORDING")
      ->capture_default_str();
  addPropertyOption(command, options.properties,
                    "Property that the recording sets at its start, such as vendor.talkertracking.flag=4");
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

}  // namespace fyn::productionrules
