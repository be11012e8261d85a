#include <gtest/gtest.h>

#include <memory>
#include <optional>

#include "platform/ServiceStateScope.h"

namespace fyn::productionrules::testing {
namespace {

/** Gives each test a service state of its own: what one leaves behind no other finds. */
class StatePerTest final : public ::testing::EmptyTestEventListener {
  void OnTestStart(const ::testing::TestInfo& /*test*/) override {
    mScope.emplace(std::make_shared<ServiceState>());
  }
  void OnTestEnd(const ::testing::TestInfo& /*test*/) override { mScope.reset(); }

  std::optional<ServiceStateScope> mScope;
};

}  // namespace
}  // namespace fyn::productionrules::testing

int main(int argc, char** argv) {
  ::testing::InitGoogleTest(&argc, argv);
  ::testing::UnitTest::GetInstance()->listeners().Append(new fyn::productionrules::testing::StatePerTest);
  return RUN_ALL_TESTS();
}
