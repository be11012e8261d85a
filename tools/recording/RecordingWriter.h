#pragma once

#include <iosfwd>
#include <string>

#include "tools/recording/RecordingEvent.h"

namespace fyn::productionrules {

/** Writes events as lines of a recording; what RecordingReader reads back. */
class RecordingWriter {
 public:
  /** `output` must outlive the writer. */
  explicit RecordingWriter(std::ostream& output) : mOutput(output) {}

  /** Writes one line. The caller keeps times from decreasing. */
  void write(const RecordingEvent& event);

 private:
  std::ostream& mOutput;
};

/** The line of an event, without its newline. */
std::string recordingLine(const RecordingEvent& event);

}  // namespace fyn::productionrules
