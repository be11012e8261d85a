#pragma once

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "config/PrConfig.h"
#include "platform/SystemEnvironment.h"
#include "platform/VisionSettings.h"
#include "tests/testing/TestEnvironment.h"

namespace fyn::productionrules::testing {

/** A test of loading: defaults in force, a configuration file and properties of its own, and the log of it
 * all. */
class ConfigTest : public ::testing::Test {
 protected:
  static constexpr const char* kPath = "/etc/fyn.conf";

  ConfigTest() {
    PrConfig::set(PrConfig::DEFAULT);
    SystemEnvironment::setFiles(
        [this](const std::string& path) { return path == kPath ? file : std::nullopt; });
  }
  ~ConfigTest() override { PrConfig::set(PrConfig::DEFAULT); }

  /** Loads with `text` as the file's content. */
  const PrConfig& load(const std::string& text) {
    file = text;
    PrConfig::load(kPath);
    return PrConfig::get();
  }

  const PrConfig& loadProperty(const std::string& key, const std::string& value) {
    environment.properties.set(key, value);
    PrConfig::load(kPath);
    return PrConfig::get();
  }

  TestEnvironment environment{VisionSettings::kInfoLevel};
  std::optional<std::string> file;
};

using Lines = std::vector<std::string>;

}  // namespace fyn::productionrules::testing
