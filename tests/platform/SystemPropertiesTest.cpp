#include <gtest/gtest.h>

#include <limits>

#include "platform/SystemProperties.h"
#include "tests/testing/TestEnvironment.h"

namespace fyn::productionrules {
namespace {

using Lines = std::vector<std::string>;

template <typename Value>
struct PropertyRow {
  const char* text;
  std::optional<Value> value;
};

TEST(PropertyInt, IsTheWholeTextAsADecimalIntegerOf32Bits) {
  const PropertyRow<int> rows[] = {
      {"0", 0},
      {"3", 3},
      {"-1", -1},
      {"007", 7},
      {"2147483647", std::numeric_limits<int>::max()},
      {"-2147483648", std::numeric_limits<int>::min()},
      {"2147483648", {}},
      {"99999999999999999999", {}},
      {"", {}},
      {" 3", {}},
      {"3 ", {}},
      {"3x", {}},
      {"0x10", {}},
      {"1.0", {}},
      {"--1", {}},
      {"true", {}},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(parsePropertyInt(row.text), row.value) << '"' << row.text << '"';
  }
  EXPECT_EQ(parsePropertyInt(std::string("3\0", 2)), std::nullopt) << "a zero byte is part of the text";
}

TEST(PropertyBool, IsOneOfTenWordsInAnyLetterCase) {
  const PropertyRow<bool> rows[] = {
      {"1", true},   {"true", true},   {"yes", true}, {"on", true},    {"y", true},
      {"0", false},  {"false", false}, {"no", false}, {"off", false},  {"n", false},
      {"YES", true}, {"fAlSe", false}, {"", {}},      {"2", {}},       {"true ", {}},
      {"tru", {}},   {"t", {}},        {"01", {}},    {"enabled", {}},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(parsePropertyBool(row.text), row.value) << '"' << row.text << '"';
  }
}

class PropertyItems : public ::testing::Test {
 protected:
  testing::TestEnvironment mEnvironment;
};

TEST_F(PropertyItems, ReadWhatIsSet) {
  EXPECT_EQ(property_set("vendor.mode", "2"), 0);
  EXPECT_EQ(property_set("vendor.flag", "On"), 0);
  int mode = 0;
  bool flag = false;
  EXPECT_TRUE(PropertyIntItem("vendor.mode").readToArg(mode));
  EXPECT_TRUE(PropertyBoolItem("vendor.flag").readToArg(flag));
  EXPECT_EQ(mode, 2);
  EXPECT_TRUE(flag);
  EXPECT_EQ(mEnvironment.log.lines(), Lines{});
}

TEST_F(PropertyItems, LeaveTheValueAndStaySilentWhenNothingIsSet) {
  int mode = 7;
  bool flag = true;
  EXPECT_FALSE(PropertyIntItem("vendor.mode").readToArg(mode));
  EXPECT_FALSE(PropertyBoolItem("vendor.flag").readToArg(flag));
  EXPECT_EQ(mode, 7);
  EXPECT_TRUE(flag);
  EXPECT_EQ(mEnvironment.log.lines(), Lines{});
}

TEST_F(PropertyItems, LeaveTheValueAndNameThePropertyWhenItsTextIsOfNoUse) {
  property_set("vendor.mode", "two");
  property_set("vendor.flag", "2");
  int mode = 7;
  bool flag = true;
  EXPECT_FALSE(PropertyIntItem("vendor.mode").readToArg(mode));
  EXPECT_FALSE(PropertyBoolItem("vendor.flag").readToArg(flag));
  EXPECT_EQ(mode, 7);
  EXPECT_TRUE(flag);
  const Lines lines = mEnvironment.log.lines();
  ASSERT_EQ(lines.size(), 2U);
  EXPECT_EQ(lines[0].rfind("W|", 0), 0U) << lines[0];
  EXPECT_NE(lines[0].find("vendor.mode"), std::string::npos) << lines[0];
  EXPECT_NE(lines[1].find("vendor.flag"), std::string::npos) << lines[1];
}

TEST_F(PropertyItems, AreVisitedInAscendingOrderAndMayBeSetMeanwhile) {
  for (const char* key : {"persist.b", "a", "vendor.c"}) {
    property_set(key, key);
  }
  Lines visited;
  mEnvironment.properties.forEach([&](const std::string& key, const std::string& value) {
    visited.push_back(key + "=" + value);
    property_set("z", "new");
  });
  EXPECT_EQ(visited, (Lines{"a=a", "persist.b=persist.b", "vendor.c=vendor.c"}));
}

}  // namespace
}  // namespace fyn::productionrules
