#pragma once

#include <map>
#include <memory>
#include <string>

#include "platform/MemoryPropertyStore.h"
#include "platform/virtual/VirtualTime.h"
#include "tests/testing/CapturedLog.h"

namespace fyn::productionrules::testing {

/**
 * A service state of a test's own, the current one until the end of the scope: a virtual clock (monotonic and
 * wall clock read 1000000 and 1700000000000 milliseconds at the start), no properties, no files but `files`,
 * a captured log, the default configuration and no cameras.
 */
class TestEnvironment {
 private:
  struct Things {
    VirtualTime time{1000000, 1700000000000};
    MemoryPropertyStore properties;
    std::map<std::string, std::string> files;
  };
  const std::shared_ptr<Things> mThings = std::make_shared<Things>();

 public:
  explicit TestEnvironment(int logLevel = 4);

  CapturedLog log;
  VirtualTime& time = mThings->time;
  MemoryPropertyStore& properties = mThings->properties;
  /** Content by path. */
  std::map<std::string, std::string>& files = mThings->files;
};

}  // namespace fyn::productionrules::testing
