#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace fyn::productionrules {

/** The faults of a feed by kind, in the order in which they were first seen. */
class FeedFaults {
 public:
  struct Kind {
    std::string text;
    std::uint64_t count = 0;
    /** Milliseconds, when it was first seen. */
    std::int64_t firstAt = 0;
    /** What was seen then; "" where the text says it. */
    std::string example;
  };

  /** Counts a fault of the kind `text`; beyond a limit of kinds, all further ones are of one kind. */
  void add(std::int64_t t, const std::string& text, const std::string& example = "");
  void add(const Kind& kind);

  const std::vector<Kind>& kinds() const { return mKinds; }

 private:
  std::vector<Kind> mKinds;
};

}  // namespace fyn::productionrules
