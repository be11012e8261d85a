#include "tools/recording/RecordingWriter.h"

#include <ostream>

#include "tools/recording/CompactText.h"
#include "tools/recording/RecordingNames.h"

namespace fyn::productionrules {

namespace {

/** Appends what follows the time. */
struct KindWriter {
  std::string& line;

  void operator()(const TimePasses& /*nothing*/) const {}

  void operator()(const BusMessage& message) const {
    line += ",\"topic\":";
    appendJsonString(line, message.topic);
    line += ",\"payload\":";
    line += payloadAsJson(message.payload);
  }

  void operator()(const SetProperties& set) const { keyValues("property", set.values); }
  void operator()(const ReplaceConfig& replace) const { keyValues("config", replace.values); }

  void operator()(ProviderChange change) const {
    line += ",\"provider\":\"";
    line += providerChangeName(change);
    line += '"';
  }

  void keyValues(const char* kind, const KeyValues& values) const {
    line.append(",\"").append(kind).append("\":");
    CompactText text(line);
    text.open('{');
    for (const auto& [key, value] : values) {
      text.key(key);
      text.string(value);
    }
    text.close('}');
  }
};

}  // namespace

std::string recordingLine(const RecordingEvent& event) {
  std::string line = "{\"t\":" + std::to_string(event.t);
  std::visit(KindWriter{line}, event.what);
  line += '}';
  return line;
}

void RecordingWriter::write(const RecordingEvent& event) {
  mOutput << recordingLine(event) << '\n';
}

}  // namespace fyn::productionrules
