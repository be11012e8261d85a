#pragma once

#include <sstream>
#include <string>
#include <vector>

#include "tools/prb/Prb.h"

namespace fyn::productionrules::testing {

/** What one run of prb left behind. */
struct PrbRun {
  int status;
  std::string out;
  std::string err;
};

/** Runs prb in this process, `input` on its standard input. */
inline PrbRun runPrbWith(const std::vector<std::string>& arguments, const std::string& input = "") {
  std::istringstream in(input);
  std::ostringstream out;
  std::ostringstream err;
  PrbContext context{in, out, err};
  const int status = runPrb(arguments, context);
  return {status, out.str(), err.str()};
}

}  // namespace fyn::productionrules::testing
