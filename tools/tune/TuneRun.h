#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tools/base/OutputRules.h"
#include "tools/base/PrbContext.h"

namespace fyn::productionrules {

/** What `prb tune` was asked for. */
struct TuneArguments {
  std::vector<std::string> recordings;
  std::vector<std::string> keys;
  std::string goal;
  std::string config;
  std::vector<std::string> properties;
  std::size_t random = 0;
  std::uint64_t seed = 1;
  unsigned workers = 0;
  std::string results = "tune.jsonl";
  std::string html;
  std::string configurations;
  std::string jobsOut;
  std::string job;
  bool listMetrics = false;
  OutputRules rules;
};

/** Does it; what the rules need to know of the inputs is filled in. Raises UsageError for wrong arguments. */
void runTune(TuneArguments& arguments, PrbContext& context);

}  // namespace fyn::productionrules
