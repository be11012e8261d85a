#pragma once

#include <stdexcept>

namespace fyn::productionrules {

/** A wrong option or a bad input: one line for the user, exit status 2. */
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace fyn::productionrules
