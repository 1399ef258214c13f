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

void WorkerBridge::Send(std::size_t job, std::string_view text, bool error) {
  {
    const MutexLock lock(mutex_);
    messages_.push_back({job, std::string(text), error});
    if (messages_.size() > 1) return;
  }
  calls_.message();
}

std::deque<WorkerBridge::Message> WorkerBridge::TakeMessages() {
  const MutexLock lock(mutex_);
  return std::exchange(messages_, {});
}

}  // namespace quillmere
