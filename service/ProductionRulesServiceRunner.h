#pragma once

#include <functional>
#include <string>

#include "platform/BaseIPCService.h"
#include "platform/Platform.h"

namespace fyn::productionrules {

/**
 * Runs one production-rules service on `platform` until it is stopped. `loadConfig`: whether the
 * configuration file is read first; without it the defaults hold. `started` is given the service before its
 * message loop begins; it may keep the reference to call `stop` once, from any thread.
 */
void runProductionRulesService(const Platform& platform, const std::string& name, bool loadConfig,
                               const std::function<void(BaseIPCService& service)>& started);

}  // namespace fyn::productionrules
