#pragma once

#include <string>
#include <vector>

#include "platform/LogSink.h"
#include "platform/Mutex.h"

namespace fyn::productionrules::testing {

/**
 * Collects the log of a test. From construction to destruction it stands in for the process's log and the
 * level is `level`; afterwards both are as before.
 */
class CapturedLog final : public LogSink {
 public:
  explicit CapturedLog(int level = 4);
  ~CapturedLog() override;
  CapturedLog(const CapturedLog&) = delete;
  CapturedLog& operator=(const CapturedLog&) = delete;

  void write(LogPriority priority, const char* tag, const char* text) override;

  /** The lines so far as "E|tag|text", in order. */
  std::vector<std::string> lines() const;

  /** The lines so far; the next call returns only newer ones. */
  std::vector<std::string> take();

 private:
  const int mFormerLevel;
  LogSink& mFormerLog;
  mutable Mutex mMutex;
  std::vector<std::string> mLines PR_GUARDED_BY(mMutex);
};

}  // namespace fyn::productionrules::testing
