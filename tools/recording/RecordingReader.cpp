#include "tools/recording/RecordingReader.h"

#include <istream>
#include <utility>

#include "tools/base/UsageError.h"
#include "tools/recording/EventParser.h"

namespace fyn::productionrules {

bool RecordingReader::next(RecordingEvent& event) {
  do {
    if (!std::getline(mInput, mText)) {
      if (mInput.bad()) {
        throw UsageError(mName + ": cannot be read any further, behind line " + std::to_string(mLine) +
                         "; a packed file may be damaged or cut off");
      }
      return false;
    }
    ++mLine;
    mBytes += mText.size() + 1;
  } while (mText.find_first_not_of(" \t\r\v\f") == std::string::npos);

  std::optional<std::string> fault;
  if (!mMessages.read(mText, event)) {
    fault = parseRecordingLine(mText, event);
  }
  if (!fault && event.t < mLastTime) {
    fault = "\"t\" goes back from " + std::to_string(mLastTime) + " to " + std::to_string(event.t);
  }
  const bool isFirst = !std::exchange(mHasBegun, true);
  if (!fault && !isFirst && std::holds_alternative<RecordedBy>(event.what)) {
    fault = "\"recorded\" stands only at the beginning";
  }
  if (fault && mInput.eof()) {
    *fault += "; the recording ends in the middle of this line, as one that was cut off";
  }
  if (fault) {
    throw UsageError(mName + ':' + std::to_string(mLine) + ": " + *fault);
  }
  mLastTime = event.t;
  return true;
}

}  // namespace fyn::productionrules
