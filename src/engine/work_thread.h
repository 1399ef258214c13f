// SPDX-License-Identifier: MIT
// HWorkThread: the one thread that runs all jobs of a workspace.
#pragma once

#include <chrono>
#include <thread>

#include "engine/job_runner.h"
#include "foundation/mutex.h"

namespace quillmere {

// Sleeps, then serves every job of the list once, in index order; again until it is terminated.
class HWorkThread {
 public:
  static constexpr std::chrono::milliseconds kSweepPause{1500};

  // runner and jobs must outlive the thread, which starts at once.
  HWorkThread(JobRunner& runner, const JobList& jobs,
              std::chrono::milliseconds pause = kSweepPause);
  ~HWorkThread();  // Terminate, and wait for the end without a limit

  // Any thread. Asks for the end and returns at once: the step in hand stops behind its statement.
  void Terminate();

  // True when the thread has ended, within the time given. A listener that waits for the calling
  // thread must be served meanwhile, so a window asks again and again with little time.
  bool WaitFor(std::chrono::milliseconds time);

 private:
  void Sweeps();
  void Sweep();
  bool TerminatedInPause();

  JobRunner& runner_;
  const JobList& jobs_;
  const std::chrono::milliseconds pause_;
  Mutex mutex_;
  Condition changed_;
  bool terminate_ GUARDED_BY(mutex_) = false;
  bool ended_ GUARDED_BY(mutex_) = false;
  std::thread thread_;
};

}  // namespace quillmere
