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
  const std::lock_guard lock(mutex_);
  terminate_ = true;
  changed_.notify_all();
}

bool HWorkThread::WaitFor(std::chrono::milliseconds time) {
  std::unique_lock lock(mutex_);
  return changed_.wait_for(lock, time, [this] { return ended_; });
}

void HWorkThread::Sweeps() {
  std::unique_lock lock(mutex_);
  while (!changed_.wait_for(lock, pause_, [this] { return terminate_; })) {
    lock.unlock();
    for (std::size_t index = 0; index < jobs_.Count() && !runner_.EndRequested(); ++index) {
      runner_.Step(index);
    }
    lock.lock();
  }
  ended_ = true;
  changed_.notify_all();
}

}  // namespace quillmere
