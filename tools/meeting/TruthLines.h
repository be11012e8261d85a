#pragma once

#include <cstdint>
#include <optional>

#include "tools/recording/RecordingWriter.h"

namespace fyn::productionrules {

/** Writes what is true of a meeting's people, from its beginning on, each time that it becomes different. */
class TruthLines {
 public:
  /** `writer` must outlive the lines. */
  explicit TruthLines(RecordingWriter& writer) : mWriter(writer) {}

  /** `t` in milliseconds. */
  void tell(std::int64_t t, const Truth& truth);

 private:
  RecordingWriter& mWriter;
  std::optional<Truth> mTold;
};

}  // namespace fyn::productionrules
