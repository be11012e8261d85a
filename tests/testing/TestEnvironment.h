#pragma once

#include "platform/MemoryPropertyStore.h"
#include "platform/virtual/VirtualTime.h"
#include "tests/testing/CapturedLog.h"

namespace fyn::productionrules::testing {

/**
 * A process environment of a test's own: a virtual clock (monotonic and wall clock read 1000000 and
 * 1700000000000 milliseconds at the start), empty properties and a captured log. Destruction puts the real
 * one back.
 */
class TestEnvironment {
 public:
  explicit TestEnvironment(int logLevel = 4);
  ~TestEnvironment();
  TestEnvironment(const TestEnvironment&) = delete;
  TestEnvironment& operator=(const TestEnvironment&) = delete;

  VirtualTime time{1000000, 1700000000000};
  MemoryPropertyStore properties;
  CapturedLog log;
};

}  // namespace fyn::productionrules::testing
