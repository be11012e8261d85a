#include "tools/base/StoppableInput.h"

#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <iostream>

namespace fyn::productionrules {

namespace {

/** How long a wish to end may go unheard while nothing comes. */
constexpr int kPollMs = 100;

}  // namespace

StoppableInput::StoppableInput(std::istream& input, StopSignals& stop)
    : mInput(input), mStop(stop), mIsStandardInput(&input == &std::cin), mStream(this) {}

StoppableInput::int_type StoppableInput::underflow() {
  pollfd waiting{STDIN_FILENO, POLLIN, 0};
  while (!mStop.waitFor(std::chrono::nanoseconds(0))) {
    const int ready = poll(&waiting, 1, kPollMs);
    if (ready == 0 || (ready < 0 && errno == EINTR)) {
      continue;
    }
    const ssize_t length = read(STDIN_FILENO, mBuffer.data(), mBuffer.size());
    if (length < 0 && errno == EINTR) {
      continue;
    }
    if (length <= 0) {
      break;
    }
    setg(mBuffer.data(), mBuffer.data(), mBuffer.data() + length);
    return traits_type::to_int_type(mBuffer[0]);
  }
  return traits_type::eof();
}

}  // namespace fyn::productionrules
