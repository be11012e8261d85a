#pragma once

#include <memory>

#include "model/FynHead.h"
#include "model/Layout.h"

namespace fyn::productionrules {

/** A person whom the pipeline has lost and found again under another number. */
struct PersonRenamed {
  std::shared_ptr<FynHead> before;
  std::shared_ptr<FynHead> now;
};

/** Gives the person of a layout the number that the person has now, so that nothing changes on screen; null
 * for no layout. */
void takeNewNumber(Layout* layout, const PersonRenamed& renamed);

}  // namespace fyn::productionrules
