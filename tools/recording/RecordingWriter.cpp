#include "tools/recording/RecordingWriter.h"

#include <ostream>

#include "tools/recording/CompactPayload.h"
#include "tools/recording/RecordingNames.h"

namespace fyn::productionrules {

namespace {

/** Adds what an event says beside its time. */
struct KindWriter {
  CompactText& text;

  void operator()(const TimePasses& /*nothing*/) const {}

  void operator()(const BusMessage& message) const {
    text.member("topic", message.topic);
    text.key("payload");
    writePayload(text, message.payload);
  }

  void operator()(const SetProperties& set) const { keyValues("property", set.values); }
  void operator()(const ReplaceConfig& replace) const { keyValues("config", replace.values); }
  void operator()(ProviderChange change) const { text.member("provider", providerChangeName(change)); }

  void operator()(const Truth& truth) const {
    text.key("truth");
    text.open('[');
    for (const TrueHead& head : truth.heads) {
      text.open('{');
      text.member("id", head.id);
      text.member("fynCamId", head.fynCamId);
      text.member("bbox", head.bbox);
      text.member("speaks", head.speaks);
      text.close('}');
    }
    text.close(']');
  }

  void operator()(const RecordedBy& by) const {
    text.key("recorded");
    text.json(by.document);
  }

  void keyValues(const char* kind, const KeyValues& values) const {
    text.key(kind);
    text.open('{');
    for (const auto& [key, value] : values) {
      text.member(key, value);
    }
    text.close('}');
  }
};

}  // namespace

std::string recordingLine(const RecordingEvent& event) {
  return lineOfTime(event.t, [&event](CompactText& text) { std::visit(KindWriter{text}, event.what); });
}

void RecordingWriter::write(const RecordingEvent& event) {
  mOutput << recordingLine(event) << '\n';
}

}  // namespace fyn::productionrules
