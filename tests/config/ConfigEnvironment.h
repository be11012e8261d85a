#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "config/PrConfig.h"
#include "platform/VisionSettings.h"
#include "tests/testing/TestEnvironment.h"

namespace fyn::productionrules::testing {

/** A test of loading: defaults in force, a configuration file and properties of its own, and the log of it
 * all. */
class ConfigTest : public ::testing::Test {
 protected:
  static constexpr const char* kPath = "/etc/fyn.conf";

  /** Loads with `text` as the file's content. */
  const PrConfig& load(const std::string& text) {
    environment.files[kPath] = text;
    PrConfig::load(kPath);
    return PrConfig::get();
  }

  const PrConfig& loadProperty(const std::string& key, const std::string& value) {
    environment.properties.set(key, value);
    PrConfig::load(kPath);
    return PrConfig::get();
  }

  TestEnvironment environment{VisionSettings::kInfoLevel};
};

using Lines = std::vector<std::string>;

}  // namespace fyn::productionrules::testing
