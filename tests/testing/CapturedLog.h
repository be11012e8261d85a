#pragma once

#include <string>
#include <vector>

#include "platform/Mutex.h"
#include "platform/ServiceStateScope.h"

namespace fyn::productionrules::testing {

/** Collects the log of a test: until the end of its scope a new service state is the current one, with this
 * log at `level`. */
class CapturedLog {
 public:
  explicit CapturedLog(int level = 4);

  /** The lines so far as "E|tag|text", in order. */
  std::vector<std::string> lines() const { return mSink->lines(); }

  /** The lines so far; the next call returns only newer ones. */
  std::vector<std::string> take() { return mSink->take(); }

 private:
  class Sink final : public LogSink {
   public:
    void write(LogPriority priority, const char* tag, const char* text) override;
    std::vector<std::string> lines() const;
    std::vector<std::string> take();

   private:
    mutable Mutex mMutex;
    std::vector<std::string> mLines PR_GUARDED_BY(mMutex);
  };

  const std::shared_ptr<Sink> mSink = std::make_shared<Sink>();
  const ServiceStateScope mScope{std::make_shared<ServiceState>()};
};

}  // namespace fyn::productionrules::testing
