#pragma once

#include "layouts/people/PeoplePresence.h"
#include "model/Layout.h"

namespace fyn::productionrules {

/** Gives the person of a layout the number that the person has now, so that nothing changes on screen; null
 * for no layout. */
void takeNewNumber(Layout* layout, const PersonRenamed& renamed);

}  // namespace fyn::productionrules
