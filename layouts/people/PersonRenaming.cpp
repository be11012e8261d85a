#include "layouts/people/PersonRenaming.h"

#include <set>

namespace fyn::productionrules {

namespace {

void replace(std::set<std::int64_t>& ids, std::int64_t before, std::int64_t now) {
  if (ids.erase(before) != 0) {
    ids.insert(now);
  }
}

}  // namespace

void takeNewNumber(Layout* layout, const PersonRenamed& renamed) {
  if (layout == nullptr) {
    return;
  }
  for (Frame& frame : layout->frames) {
    const Head* const before = renamed.before->findHead(frame.fynCamId);
    const Head* const now = renamed.now->findHead(frame.fynCamId);
    const bool isShown = frame.fynHeads.count(renamed.before->id) != 0;
    replace(frame.fynHeads, renamed.before->id, renamed.now->id);
    if (before == nullptr || now == nullptr) {
      continue;
    }
    if (isShown || frame.frameType == FramingType::GROUP) {
      replace(frame.heads, before->id, now->id);
    }
    if (!isShown && frame.frameType == FramingType::GROUP) {
      // A placed group frame names heads in the place of persons.
      replace(frame.fynHeads, before->id, now->id);
    }
  }
}

}  // namespace fyn::productionrules
