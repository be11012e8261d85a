#pragma once

#include <cstdint>
#include <set>
#include <string>

#include "tools/recording/RecordingEvent.h"

namespace fyn::productionrules {

/** Notices heads outside of an image whose size no camera document has told: the size that is taken then is
 * wrong. */
class ImageSizeHint {
 public:
  /** Looks at one event of a recording. */
  void look(const RecordingEvent& event);

  /** One line for the user; "" when there is nothing to say. */
  const std::string& text() const { return mText; }

 private:
  void lookAtHeads(const RecordingEvent& event, const std::string& result);

  /** Cameras whose size is known; those of the own camera stand for -1 too. */
  std::set<std::int64_t> mKnown;
  std::uint64_t mResults = 0;
  std::string mText;
};

}  // namespace fyn::productionrules
