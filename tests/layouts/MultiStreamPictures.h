#pragma once

#include <string>

#include "layouts/streams/MultiStreamFramingLayout.h"
#include "tests/layouts/PeopleRun.h"

namespace fyn::productionrules::testing {

/** A scene in one line: "1@200 2@900,400" is two persons by the centres of their heads; y is 300 unless
 * given. */
Scene peopleAt(const std::string& places);

/** What is on screen beside stream 0, in one line: "1 HEAD [7], 2 ROOM []". A GROUP frame is named without
 * people. */
std::string streamPictures(const BaseLayout& engine);

}  // namespace fyn::productionrules::testing
