#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <utility>

// clang checks at compile time (-Wthread-safety) that what a mutex guards is touched only under it.
#if defined(__clang__)
#define PR_THREAD_ANNOTATION(attribute) __attribute__((attribute))
#else
#define PR_THREAD_ANNOTATION(attribute)
#endif

/** A member that may be touched only while `mutex` is held. */
#define PR_GUARDED_BY(mutex) PR_THREAD_ANNOTATION(guarded_by(mutex))
/** A function or lambda that is called only while `mutex` is held. */
#define PR_REQUIRES(mutex) PR_THREAD_ANNOTATION(requires_capability(mutex))

namespace fyn::productionrules {

/** A mutex of the standard library that clang's analysis knows. */
template <typename Base>
class PR_THREAD_ANNOTATION(capability("mutex")) BasicMutex {
 public:
  using Standard = Base;

  void lock() PR_THREAD_ANNOTATION(acquire_capability()) { mMutex.lock(); }
  bool try_lock() PR_THREAD_ANNOTATION(try_acquire_capability(true)) { return mMutex.try_lock(); }
  void unlock() PR_THREAD_ANNOTATION(release_capability()) { mMutex.unlock(); }

  /** Tells the analysis that the caller holds it, where it cannot know. */
  void assertHeld() const PR_THREAD_ANNOTATION(assert_capability(this)) {}

  Standard& standard() { return mMutex; }

 private:
  Standard mMutex;
};

using Mutex = BasicMutex<std::mutex>;
using RecursiveMutex = BasicMutex<std::recursive_mutex>;

/** Holds a mutex until it goes out of scope. */
template <typename Held>
class PR_THREAD_ANNOTATION(scoped_lockable) MutexLock {
 public:
  explicit MutexLock(Held& mutex) PR_THREAD_ANNOTATION(acquire_capability(mutex)) : mLock(mutex.standard()) {}
  ~MutexLock() PR_THREAD_ANNOTATION(release_capability()) {}
  MutexLock(const MutexLock&) = delete;
  MutexLock& operator=(const MutexLock&) = delete;

  void lock() PR_THREAD_ANNOTATION(acquire_capability()) { mLock.lock(); }
  void unlock() PR_THREAD_ANNOTATION(release_capability()) { mLock.unlock(); }

 private:
  friend class ConditionVariable;
  std::unique_lock<typename Held::Standard> mLock;
};

/** The waits of std::condition_variable. `ready` is called under the lock: `[this]() PR_REQUIRES(mMutex)
 * {...}`. */
class ConditionVariable {
 public:
  void notifyOne() { mCondition.notify_one(); }
  void notifyAll() { mCondition.notify_all(); }

  // False when the time is over and it is not ready.
  template <typename Limit, typename Ready>
  bool waitFor(MutexLock<Mutex>& lock, const Limit& limit, Ready ready) {
    return mCondition.wait_for(lock.mLock, limit, std::move(ready));
  }
  template <typename Time, typename Ready>
  bool waitUntil(MutexLock<Mutex>& lock, const Time& end, Ready ready) {
    return mCondition.wait_until(lock.mLock, end, std::move(ready));
  }

 private:
  std::condition_variable mCondition;
};

}  // namespace fyn::productionrules
