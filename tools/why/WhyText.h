#pragma once

#include <iosfwd>
#include <nlohmann/json_fwd.hpp>

#include "tools/why/WhyAnswer.h"

namespace fyn::productionrules {

/** The answer in words. */
void writeWhy(std::ostream& out, const WhyAnswer& answer);

/** The same for programs; times in milliseconds from the start of the recording. */
nlohmann::ordered_json whyAsJson(const WhyAnswer& answer);

}  // namespace fyn::productionrules
