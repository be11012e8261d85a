#pragma once

#include <cstdint>
#include <iosfwd>
#include <string>

#include "tools/recording/MessageLine.h"
#include "tools/recording/RecordingEvent.h"

namespace fyn::productionrules {

/**
 * Reads a recording (JSON Lines, one event per line) line by line, so its size does not matter. Blank lines
 * are skipped.
 */
class RecordingReader {
 public:
  /** `name` stands for the input in errors. `input` must outlive the reader. */
  RecordingReader(std::istream& input, std::string name) : mInput(input), mName(std::move(name)) {}

  /**
   * Reads the next event. False at the end. Raises UsageError "NAME:LINE: FAULT" when the line is malformed:
   * no JSON object, an unknown key, two kinds of event, a value of the wrong kind, a time before that of an
   * earlier line, or a "recorded" behind another line. The fault of a last line without its end says that the
   * recording was cut off.
   */
  bool next(RecordingEvent& event);

  /** The number of the line read last, from 1; 0 before the first. */
  std::uint64_t line() const { return mLine; }

  /** Bytes consumed so far. */
  std::uint64_t bytesRead() const { return mBytes; }

 private:
  std::istream& mInput;
  std::string mName;
  std::string mText;
  MessageLine mMessages;
  std::uint64_t mLine = 0;
  std::uint64_t mBytes = 0;
  std::int64_t mLastTime = 0;
  bool mHasBegun = false;
};

}  // namespace fyn::productionrules
