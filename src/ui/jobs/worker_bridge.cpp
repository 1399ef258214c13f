// SPDX-License-Identifier: MIT
#include "ui/jobs/worker_bridge.h"

#include <utility>

namespace quillmere {

void WorkerBridge::OnJobChanged(std::size_t job, bool) {
  {
    const MutexLock lock(mutex_);
    if (job >= changed_.size()) changed_.resize(job + 1);
    if (changed_[job]) return;
    changed_[job] = true;
    jobs_.push_back(job);
    if (jobs_.size() > 1) return;
  }
  calls_.changes();
}

std::vector<std::size_t> WorkerBridge::TakeChanges() {
  const MutexLock lock(mutex_);
  for (const std::size_t job : jobs_) changed_[job] = false;
  return std::exchange(jobs_, {});
}

void WorkerBridge::Send(std::string_view text, bool error) {
  {
    const MutexLock lock(mutex_);
    text_ = text;
    error_ = error;
    message_ = Message::Waiting;
  }
  calls_.message();
  const MutexLock lock(mutex_);
  while (message_ != Message::None) taken_.Wait(mutex_);
}

bool WorkerBridge::TakeMessage(const Taker& take) {
  std::string_view text;
  bool error = false;
  {
    const MutexLock lock(mutex_);
    if (message_ != Message::Waiting) return false;
    message_ = Message::BeingTaken;
    text = text_;
    error = error_;
  }
  take(text, error);
  const MutexLock lock(mutex_);
  message_ = Message::None;
  taken_.NotifyAll();
  return true;
}

}  // namespace quillmere
