#include "tests/testing/TestEnvironment.h"

namespace fyn::productionrules::testing {

TestEnvironment::TestEnvironment(int logLevel) : log(logLevel) {
  ServiceState& state = ServiceState::current();
  state.setClock({mThings, &mThings->time});
  state.setProperties({mThings, &mThings->properties});
  state.setFiles([things = mThings](const std::string& path) -> std::optional<std::string> {
    const auto found = things->files.find(path);
    return found != things->files.end() ? std::optional(found->second) : std::nullopt;
  });
}

}  // namespace fyn::productionrules::testing
