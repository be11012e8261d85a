#pragma once

namespace fyn::productionrules {

/** A line is logged when the level is at least its own; level 0 silences all. */
struct LogLevels {
  static constexpr int kErrorLevel = 1;
  static constexpr int kWarningLevel = 2;
  static constexpr int kInfoLevel = 3;
  static constexpr int kDebugLevel = 4;
};

}  // namespace fyn::productionrules
