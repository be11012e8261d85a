#include <cstdlib>
#include <fstream>
#include <map>
#include <set>

#include "config/ConfigKeys.h"
#include "config/ExampleConfiguration.h"
#include "config/Presets.h"
#include "platform/TextFile.h"
#include "tests/config/ConfigEnvironment.h"
#include "tests/testing/Folders.h"

namespace fyn::productionrules {
namespace {

using testing::ConfigTest;
using testing::TestEnvironment;

// A value that differs from the default, and from row to row where the kind allows it.
std::int32_t otherValue(const ConfigKey& row, std::size_t number) {
  if (std::holds_alternative<bool PrConfig::*>(row.field)) {
    return configValue(PrConfig::DEFAULT, row) == 0 ? 1 : 0;
  }
  return std::holds_alternative<FynOperatingMode PrConfig::*>(row.field) ? 2
                                                                         : 100000 + static_cast<int>(number);
}

TEST_F(ConfigTest, EveryKeySetsItsOwnFieldAndNoOther) {
  for (std::size_t number = 0; number < kConfigKeys.size(); ++number) {
    const ConfigKey& row = kConfigKeys[number];
    if (row.source == ConfigSource::Fixed) {
      EXPECT_TRUE(row.key.empty()) << row.name;
      continue;
    }
    const std::int32_t value = otherValue(row, number);
    TestEnvironment own(VisionSettings::kInfoLevel);
    if (row.source == ConfigSource::File) {
      own.files[kPath] = std::string(row.key) + "=" + std::to_string(value);
    } else {
      own.properties.set(std::string(row.key), std::to_string(value));
    }
    PrConfig::load(kPath);
    for (const ConfigKey& other : kConfigKeys) {
      EXPECT_EQ(configValue(PrConfig::get(), other),
                &other == &row ? value : configValue(PrConfig::DEFAULT, other))
          << row.key << " and " << other.name;
    }
  }
}

TEST(ConfigTable, KeysAreFoundByTheirWholeText) {
  std::set<std::string_view> keys;
  for (const ConfigKey& row : kConfigKeys) {
    if (row.source != ConfigSource::Fixed) {
      EXPECT_TRUE(keys.insert(row.key).second) << row.key << " stands twice";
      EXPECT_EQ(findConfigKey(row.key), &row);
    }
    EXPECT_FALSE(row.meaning.empty()) << row.name;
  }
  for (const char* unknown :
       {"", "persist", "persist.tvpr.logs ", "persist.tvpr.log", "zzz", "Animation.cut.duration"}) {
    EXPECT_EQ(findConfigKey(unknown), nullptr) << unknown;
  }
}

// PR_UPDATE_EXAMPLE=1 writes the files anew from the tables.
void expectUpToDate(const std::string& name, const std::string& text) {
  const std::string path = testing::sourceFolder() + "/conf/" + name;
  if (std::getenv("PR_UPDATE_EXAMPLE") != nullptr) {
    std::ofstream(path, std::ios::binary) << text;
  }
  EXPECT_EQ(readTextFile(path).value_or("no such file"), text)
      << "run this test with PR_UPDATE_EXAMPLE=1 and commit the file";
}

TEST(CommittedConfiguration, IsUpToDate) {
  expectUpToDate("fyn.conf.example", exampleConfiguration());
  for (const Preset& preset : presets()) {
    const std::string folder = &preset == &recommendedPreset() ? "" : "presets/";
    expectUpToDate(folder + std::string(preset.name) + ".conf", presetConfiguration(preset));
  }
}

// Each key of a preset is one of the configuration file and changes something.
TEST_F(ConfigTest, EveryLineOfAPresetCounts) {
  for (const Preset& preset : presets()) {
    for (const PresetLine& line : preset.lines) {
      const ConfigKey* const row = findConfigKey(line.key);
      ASSERT_TRUE(row != nullptr && row->source == ConfigSource::File) << line.key;
      EXPECT_NE(configValue(PrConfig::DEFAULT, *row), line.value) << preset.name << ": " << line.key;
      EXPECT_EQ(configValue(load(presetConfiguration(preset)), *row), line.value) << line.key;
    }
  }
}

TEST_F(ConfigTest, TheExampleHoldsEveryFileKeyAndChangesNothing) {
  load(exampleConfiguration());
  EXPECT_EQ(environment.log.take(), testing::Lines{});
  std::map<std::string, int> lines;
  forEachConfigLine(exampleConfiguration(), [&](std::string_view key, std::string_view /*value*/,
                                                int /*line*/) { ++lines[std::string(key)]; });
  for (const ConfigKey& row : kConfigKeys) {
    EXPECT_EQ(lines.count(std::string(row.key)), row.source == ConfigSource::File ? 1U : 0U) << row.name;
  }
}

}  // namespace
}  // namespace fyn::productionrules
