#pragma once

#include <memory>
#include <string>

#include "tools/recording/RecordingEvent.h"

namespace fyn::productionrules {

/**
 * Reads the lines that make up a recording as a recorder writes them: bus messages, without taking their
 * payload apart (its text is used as it stands when it is the compact text of the document), and truth.
 */
class MessageLine {
 public:
  MessageLine();
  ~MessageLine();
  MessageLine(const MessageLine&) = delete;
  MessageLine& operator=(const MessageLine&) = delete;

  /** Reads `line` into `event`. False, with `event` unchanged, for every other line, one that is no JSON
   * among them, and on a build without this reader: parseRecordingLine reads it. */
  bool read(const std::string& line, RecordingEvent& event);

 private:
  struct Parser;

  // Keeps its memory from one line to the next.
  std::unique_ptr<Parser> mParser;
};

}  // namespace fyn::productionrules
