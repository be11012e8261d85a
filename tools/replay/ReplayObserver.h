#pragma once

#include <string>

#include "platform/LogSink.h"

namespace fyn::productionrules {

/** Told every observable effect of a replayed service, in order. What it does not override is not reported.
 */
class ReplayObserver {
 public:
  virtual ~ReplayObserver() = default;

  virtual void onPublish(const std::string& /*topic*/, const std::string& /*payload*/) {}
  virtual void onScene(const std::string& /*json*/, bool /*delivered*/) {}
  virtual void onSubscribe(const std::string& /*topic*/) {}
  virtual void onAdvertise(const std::string& /*topic*/) {}
  virtual void onLog(LogPriority /*priority*/, const char* /*tag*/, const char* /*text*/) {}
};

}  // namespace fyn::productionrules
