#include "tools/base/WorkerPool.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <exception>
#include <thread>
#include <utility>
#include <vector>

#include "platform/Mutex.h"

namespace fyn::productionrules {

namespace {

using Task = std::function<void(std::size_t index, const GivenUp& isGivenUp)>;

/** How long an interruption may go unheard. */
constexpr std::chrono::milliseconds kPatience{100};

/** Threads that take the tasks in their order. */
class Workers {
 public:
  Workers(std::size_t count, const Task& task) : mTask(task), mWantedEnd(count) {}
  Workers(const Workers&) = delete;
  Workers& operator=(const Workers&) = delete;
  ~Workers() {
    giveUp();
    for (std::thread& thread : mThreads) {
      thread.join();
    }
  }

  void start(std::size_t threads) {
    while (mThreads.size() < threads) {
      {
        const MutexLock lock(mMutex);
        ++mWorking;
      }
      mThreads.emplace_back([this] { work(); });
    }
  }

  void giveUp() {
    const MutexLock lock(mMutex);
    mWantedEnd = 0;
  }

  /** Waits a while for tasks that have ended since the last call. False when there will be no more. */
  bool takeEnded(std::vector<std::size_t>& ended) {
    MutexLock lock(mMutex);
    mChanged.waitFor(lock, kPatience,
                     [this]() PR_REQUIRES(mMutex) { return !mEnded.empty() || mWorking == 0; });
    ended = std::exchange(mEnded, {});
    return mWorking != 0 || !ended.empty();
  }

  void raiseFault() {
    const MutexLock lock(mMutex);
    if (mFault != nullptr) {
      std::rethrow_exception(mFault);
    }
  }

 private:
  void work() {
    for (std::size_t index = mNext++; index < mWantedEnd; index = mNext++) {
      run(index);
      mChanged.notifyOne();
    }
    {
      const MutexLock lock(mMutex);
      --mWorking;
    }
    mChanged.notifyOne();
  }

  void run(std::size_t index) {
    try {
      mTask(index, [this, index] { return index >= mWantedEnd; });
      const MutexLock lock(mMutex);
      if (index < mWantedEnd) {
        mEnded.push_back(index);
      }
    } catch (...) {
      const MutexLock lock(mMutex);
      if (index < mWantedEnd) {
        mWantedEnd = index;
        mFault = std::current_exception();
      }
    }
  }

  const Task& mTask;
  std::atomic<std::size_t> mNext{0};
  /** Tasks from here on are given up; written under the lock. */
  std::atomic<std::size_t> mWantedEnd;
  Mutex mMutex;
  ConditionVariable mChanged;
  std::size_t mWorking PR_GUARDED_BY(mMutex) = 0;
  std::vector<std::size_t> mEnded PR_GUARDED_BY(mMutex);
  std::exception_ptr mFault PR_GUARDED_BY(mMutex);
  std::vector<std::thread> mThreads;
};

}  // namespace

bool runInWorkers(std::size_t count, const Task& task, const std::function<void(std::size_t index)>& done,
                  const WorkerOptions& options) {
  const std::size_t most =
      options.workers != 0 ? options.workers : std::max(1U, std::thread::hardware_concurrency());
  Workers workers(count, task);
  workers.start(std::min(most, count));
  std::size_t finished = 0;
  for (std::vector<std::size_t> ended; workers.takeEnded(ended);) {
    std::for_each(ended.begin(), ended.end(), done);
    finished += ended.size();
    if (options.isInterrupted && options.isInterrupted()) {
      workers.giveUp();
    }
  }
  workers.raiseFault();
  return finished == count;
}

}  // namespace fyn::productionrules
