// SPDX-License-Identifier: MIT
// Locks that clang checks: a field says which mutex guards it, a function which one must or must
// not be held, and -Wthread-safety makes a breach an error. The standard library's mutex carries no
// such marks here, hence the thin wrapper. Other compilers see nothing of the marks.
#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>

#if defined(__clang__)
#define QUILLMERE_THREAD_MARK(mark) __attribute__((mark))
#else
#define QUILLMERE_THREAD_MARK(mark)
#endif

#define CAPABILITY(name) QUILLMERE_THREAD_MARK(capability(name))
#define SCOPED_CAPABILITY QUILLMERE_THREAD_MARK(scoped_lockable)
// A field: touched only while the mutex is held.
#define GUARDED_BY(mutex) QUILLMERE_THREAD_MARK(guarded_by(mutex))
// A function: called only while the mutex is held, or only while it is not.
#define REQUIRES(...) QUILLMERE_THREAD_MARK(requires_capability(__VA_ARGS__))
// A function that comes back with the mutex taken, or given up.
#define ACQUIRE(...) QUILLMERE_THREAD_MARK(acquire_capability(__VA_ARGS__))
#define RELEASE(...) QUILLMERE_THREAD_MARK(release_capability(__VA_ARGS__))
// A function whose locking clang can not follow; it says why it is right.
#define NO_THREAD_SAFETY_ANALYSIS QUILLMERE_THREAD_MARK(no_thread_safety_analysis)

namespace quillmere {

class CAPABILITY("mutex") Mutex {
 public:
  Mutex() = default;
  Mutex(const Mutex&) = delete;
  Mutex& operator=(const Mutex&) = delete;

  void Lock() ACQUIRE() { mutex_.lock(); }
  void Unlock() RELEASE() { mutex_.unlock(); }

 private:
  friend class Condition;
  std::mutex mutex_;
};

// Holds the mutex while it lives.
class SCOPED_CAPABILITY MutexLock {
 public:
  explicit MutexLock(Mutex& mutex) ACQUIRE(mutex) : mutex_(mutex) { mutex_.Lock(); }
  ~MutexLock() RELEASE() { mutex_.Unlock(); }
  MutexLock(const MutexLock&) = delete;
  MutexLock& operator=(const MutexLock&) = delete;

 private:
  Mutex& mutex_;
};

// What is waited for stands in the caller's loop, where clang sees that the lock is held: waiting
// gives the mutex up meanwhile and may come back for no reason.
class Condition {
 public:
  using Time = std::chrono::steady_clock::time_point;

  void Wait(Mutex& mutex) REQUIRES(mutex) {
    std::unique_lock<std::mutex> lock(mutex.mutex_, std::adopt_lock);
    condition_.wait(lock);
    lock.release();  // the caller goes on holding it
  }

  // False when the time has come.
  bool WaitUntil(Mutex& mutex, Time time) REQUIRES(mutex) {
    std::unique_lock<std::mutex> lock(mutex.mutex_, std::adopt_lock);
    const bool woken = condition_.wait_until(lock, time) == std::cv_status::no_timeout;
    lock.release();
    return woken;
  }

  void NotifyAll() { condition_.notify_all(); }

 private:
  std::condition_variable condition_;
};

}  // namespace quillmere
