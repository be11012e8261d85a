#include "tests/testing/TestEnvironment.h"

#include "platform/SystemEnvironment.h"

namespace fyn::productionrules::testing {

TestEnvironment::TestEnvironment(int logLevel) : log(logLevel) {
  SystemEnvironment::setClock(&time);
  SystemEnvironment::setProperties(&properties);
}

TestEnvironment::~TestEnvironment() {
  processTimes() = {};
  SystemEnvironment::reset();
}

}  // namespace fyn::productionrules::testing
