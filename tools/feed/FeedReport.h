#pragma once

#include <string>

#include "tools/feed/FeedCheck.h"

namespace fyn::productionrules {

/** What `check`, which is finished, has found in the feed `name`, in lines for a person. */
std::string feedReport(const FeedCheck& check, const std::string& name);

}  // namespace fyn::productionrules
