#include "tools/base/WorkerPool.h"

#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <stdexcept>
#include <thread>
#include <vector>

#include "tools/base/UsageError.h"

namespace fyn::productionrules {

namespace {

// A child's first byte says what its text is.
constexpr char kResult = 'R';
constexpr char kWrongInput = 'U';
constexpr char kFailure = 'F';

constexpr int kPollMs = 100;
constexpr std::size_t kBlock = 65536;

[[noreturn]] void raiseSystemError(const char* what) {
  throw std::runtime_error(std::string(what) + ": " + std::strerror(errno));
}

bool writeAll(int file, const std::string& text) {
  for (std::size_t done = 0; done < text.size();) {
    const ssize_t count = write(file, text.data() + done, text.size() - done);
    if (count < 0 && errno != EINTR) {
      return false;
    }
    done += static_cast<std::size_t>(std::max<ssize_t>(count, 0));
  }
  return true;
}

std::string runTask(const std::function<std::string(std::size_t)>& task, std::size_t index) {
  try {
    return kResult + task(index);
  } catch (const UsageError& error) {
    return std::string(1, kWrongInput) + error.what();
  } catch (const std::exception& error) {
    return std::string(1, kFailure) + error.what();
  }
}

/** The child processes that run now. */
class Children {
 public:
  explicit Children(bool handlesInterrupts) : mHandlesInterrupts(handlesInterrupts) {}
  Children(const Children&) = delete;
  Children& operator=(const Children&) = delete;
  ~Children() {
    for (const Child& child : mChildren) {
      kill(child.process, SIGKILL);
      reap(child);
    }
  }

  std::size_t size() const { return mChildren.size(); }

  void start(const std::function<std::string(std::size_t)>& task, std::size_t index) {
    std::array<int, 2> ends{};
    if (pipe(ends.data()) != 0) {
      raiseSystemError("pipe");
    }
    const pid_t process = fork();
    if (process < 0) {
      close(ends[0]);
      close(ends[1]);
      raiseSystemError("fork");
    }
    if (process == 0) {
      // Ctrl-C reaches the whole group; who watches for it decides what it means.
      if (mHandlesInterrupts) {
        std::signal(SIGINT, SIG_IGN);
      }
      close(ends[0]);
      const bool written = writeAll(ends[1], runTask(task, index));
      _exit(written ? 0 : 1);
    }
    close(ends[1]);
    mChildren.push_back({process, ends[0], index, ""});
  }

  /** Takes what the children have written; calls `ended(index, text)` for each that is done. */
  template <typename Ended>
  void read(Ended&& ended) {
    std::vector<pollfd> files;
    for (const Child& child : mChildren) {
      files.push_back({child.file, POLLIN, 0});
    }
    if (poll(files.data(), files.size(), kPollMs) <= 0) {
      return;
    }
    for (std::size_t place = files.size(); place-- > 0;) {
      if (files[place].revents != 0 && !readFrom(mChildren[place])) {
        const Child child = mChildren[place];
        mChildren.erase(mChildren.begin() + static_cast<std::ptrdiff_t>(place));
        reap(child);
        ended(child.index, child.text);
      }
    }
  }

 private:
  struct Child {
    pid_t process;
    int file;
    std::size_t index;
    std::string text;
  };

  static void reap(const Child& child) {
    close(child.file);
    while (waitpid(child.process, nullptr, 0) < 0 && errno == EINTR) {
    }
  }

  /** False at the end of the text. */
  static bool readFrom(Child& child) {
    std::array<char, kBlock> block{};
    const ssize_t count = ::read(child.file, block.data(), block.size());
    if (count > 0) {
      child.text.append(block.data(), static_cast<std::size_t>(count));
    }
    return count > 0 || (count < 0 && errno == EINTR);
  }

  const bool mHandlesInterrupts;
  std::vector<Child> mChildren;
};

std::string resultOf(const std::string& text) {
  const char kind = text.empty() ? '\0' : text.front();
  std::string rest = text.empty() ? "" : text.substr(1);
  switch (kind) {
    case kResult:
      return rest;
    case kWrongInput:
      throw UsageError(rest);
    case kFailure:
      throw std::runtime_error(rest);
    default:
      throw std::runtime_error("a worker process ended without a result");
  }
}

}  // namespace

unsigned processorCount() {
  return std::max(1U, std::thread::hardware_concurrency());
}

bool runInWorkers(std::size_t count, const std::function<std::string(std::size_t index)>& task,
                  const std::function<void(std::size_t index, const std::string& text)>& done,
                  const WorkerOptions& options) {
  const std::size_t most = options.workers != 0 ? options.workers : processorCount();
  Children children(static_cast<bool>(options.isInterrupted));
  std::size_t next = 0;
  while (next < count || children.size() > 0) {
    if (options.isInterrupted && options.isInterrupted()) {
      return false;
    }
    while (next < count && children.size() < most) {
      children.start(task, next++);
    }
    children.read([&done](std::size_t index, const std::string& text) { done(index, resultOf(text)); });
  }
  return true;
}

}  // namespace fyn::productionrules
