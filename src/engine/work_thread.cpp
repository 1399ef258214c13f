// SPDX-License-Identifier: MIT
#include "engine/work_thread.h"

namespace quillmere {

HWorkThread::HWorkThread(JobRunner& runner, const JobList& jobs, std::chrono::milliseconds pause)
    : runner_(runner), jobs_(jobs), pause_(pause), thread_([this] { Sweeps(); }) {}

HWorkThread::~HWorkThread() {
  Terminate();
  thread_.join();
}

void HWorkThread::Terminate() {
  runner_.RequestEnd();
  const MutexLock lock(mutex_);
  terminate_ = true;
  changed_.NotifyAll();
}

bool HWorkThread::WaitFor(std::chrono::milliseconds time) {
  const Condition::Time limit = std::chrono::steady_clock::now() + time;
  const MutexLock lock(mutex_);
  while (!ended_ && changed_.WaitUntil(mutex_, limit)) continue;
  return ended_;
}

bool HWorkThread::TerminatedInPause() {
  const Condition::Time limit = std::chrono::steady_clock::now() + pause_;
  const MutexLock lock(mutex_);
  while (!terminate_ && changed_.WaitUntil(mutex_, limit)) continue;
  return terminate_;
}

void HWorkThread::Sweep() {
  for (std::size_t index = 0; index < jobs_.Count() && !runner_.EndRequested(); ++index) {
    runner_.Step(index);
  }
}

void HWorkThread::Sweeps() {
  while (!TerminatedInPause()) Sweep();
  const MutexLock lock(mutex_);
  ended_ = true;
  changed_.NotifyAll();
}

}  // namespace quillmere
