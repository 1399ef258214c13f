#include "ui/jobs/worker_bridge.h"

#include <utility>

namespace quillmere {

void WorkerBridge::OnJobChanged(std::size_t job, bool) {
  {
    const std::lock_guard lock(mutex_);
    if (job >= changed_.size()) changed_.resize(job + 1);
    if (changed_[job]) return;
    changed_[job] = true;
    jobs_.push_back(job);
    if (jobs_.size() > 1) return;
  }
  calls_.changes();
}

std::vector<std::size_t> WorkerBridge::TakeChanges() {
  const std::lock_guard lock(mutex_);
  for (const std::size_t job : jobs_) changed_[job] = false;
  return std::exchange(jobs_, {});
}

void WorkerBridge::Send(std::string_view text, bool error) {
  {
    const std::lock_guard lock(mutex_);
    text_ = text;
    error_ = error;
    message_ = Message::Waiting;
  }
  calls_.message();
  std::unique_lock lock(mutex_);
  taken_.wait(lock, [this] { return message_ == Message::None; });
}

bool WorkerBridge::TakeMessage(const Taker& take) {
  std::unique_lock lock(mutex_);
  if (message_ != Message::Waiting) return false;
  message_ = Message::BeingTaken;
  const std::string_view text = text_;
  const bool error = error_;
  lock.unlock();
  take(text, error);
  lock.lock();
  message_ = Message::None;
  taken_.notify_all();
  return true;
}

}  // namespace quillmere
