#include "tools/feed/FeedFaults.h"

#include <algorithm>

namespace fyn::productionrules {

namespace {

/** A feed may invent names of members forever. */
constexpr std::size_t kMostKinds = 40;

}  // namespace

void FeedFaults::add(std::int64_t t, const std::string& text, const std::string& example) {
  add({text, 1, t, example});
}

void FeedFaults::add(const Kind& kind) {
  const auto same = std::find_if(mKinds.begin(), mKinds.end(),
                                 [&kind](const Kind& each) { return each.text == kind.text; });
  if (same != mKinds.end()) {
    same->count += kind.count;
  } else if (mKinds.size() < kMostKinds) {
    mKinds.push_back(kind);
  } else if (mKinds.size() == kMostKinds) {
    mKinds.push_back({"faults of further kinds", kind.count, kind.firstAt, ""});
  } else {
    mKinds.back().count += kind.count;
  }
}

}  // namespace fyn::productionrules
