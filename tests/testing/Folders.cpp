#include "tests/testing/Folders.h"

namespace fyn::productionrules::testing {

std::string sourceFolder() {
  return PR_SOURCE_DIR;
}

std::string programFolder() {
  return PR_PROGRAM_DIR;
}

}  // namespace fyn::productionrules::testing
