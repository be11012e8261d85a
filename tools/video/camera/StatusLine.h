#pragma once

#include <cstdint>
#include <fstream>
#include <set>
#include <string>

#include "tools/video/camera/Programme.h"
#include "tools/video/camera/VisionFrame.h"

namespace fyn::productionrules::video {

/** What goes on, in a line a second: people, mode, picture, and how old the picture is. */
class StatusLine {
 public:
  /** `file` is written to; a terminal keeps the latest line. Raises UsageError when it cannot be. */
  explicit StatusLine(const std::string& file);

  /** A picture that is shown now, and who is seen in its frame. */
  void shown(const ComposedPicture& picture, const std::vector<ShownHead>& heads, std::int64_t ageMs);

 private:
  std::ofstream mOut;
  const bool mIsTerminal;
  std::int64_t mDueMs = 0;
  std::vector<double> mAges;
};

/** The line's text. */
std::string statusText(const ComposedPicture& picture, const std::vector<ShownHead>& heads, double ageMs);

}  // namespace fyn::productionrules::video
