#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace fyn::productionrules::video {

/** A program at one end of a pipe, out of reach of Ctrl-C: it ends when the pipe does. */
class PipedProcess {
 public:
  enum class Pipe { toInput, fromOutput };

  /** Raises UsageError when `command` cannot be started. */
  PipedProcess(const std::vector<std::string>& command, Pipe pipe);
  ~PipedProcess();
  PipedProcess(const PipedProcess&) = delete;
  PipedProcess& operator=(const PipedProcess&) = delete;

  /** Our end of the pipe. */
  int descriptor() const { return mDescriptor; }

  /** Closes the pipe, waits for the end and returns its status, 0 when all is well. One that only reads for
   * us is not asked to complete anything. */
  int finish();

 private:
  const Pipe mPipe;
  int mDescriptor = -1;
  pid_t mPid = -1;
  int mStatus = 0;
};

}  // namespace fyn::productionrules::video
