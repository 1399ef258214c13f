// SPDX-License-Identifier: MIT
#include "ui/waiting/waiting_task.h"

#include <utility>

namespace quillmere {

bool WaitingTask::Begin(Step step, bool connecting) {
  {
    const MutexLock lock(mutex_);
    if (cancelled_) return false;
    connecting_ = connecting;
    news_.step = std::move(step);
  }
  Wake();
  return true;
}

bool WaitingTask::OnProgress(std::string_view what, std::size_t done, std::size_t total) {
  return Begin({std::string(what), done, total}, false);
}

bool WaitingTask::OnConnect(std::string_view what) {
  return Begin({std::string(what), 0, 0}, true);
}

void WaitingTask::OnResult(std::string_view line, bool failed) {
  Tell({LineKind::Result, std::string(line), failed});
}

void WaitingTask::OnDetail(std::string_view line) {
  Tell({LineKind::Detail, std::string(line), true});
}

bool WaitingTask::Add(std::string_view text, bool error) {
  Tell({LineKind::Log, std::string(text), error});
  return true;
}

void WaitingTask::Tell(Line line) {
  {
    const MutexLock lock(mutex_);
    news_.lines.push_back(std::move(line));
  }
  Wake();
}

void WaitingTask::Finish() {
  {
    const MutexLock lock(mutex_);
    news_.finished = true;
  }
  Wake();
}

void WaitingTask::Wake() {
  {
    const MutexLock lock(mutex_);
    if (std::exchange(told_, true)) return;
  }
  wake_();
}

WaitingTask::News WaitingTask::Take() {
  const MutexLock lock(mutex_);
  told_ = false;
  News news = std::exchange(news_, {});
  news_.finished = news.finished;
  return news;
}

bool WaitingTask::Cancel() {
  const MutexLock lock(mutex_);
  cancelled_ = true;
  return connecting_;
}

}  // namespace quillmere
