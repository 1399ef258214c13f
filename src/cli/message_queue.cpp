// SPDX-License-Identifier: MIT
#include "cli/message_queue.h"

#include <utility>

namespace quillmere::cli {

void MessageQueue::Put(Message message) {
  const MutexLock lock(mutex_);
  while (messages_.size() >= capacity_) changed_.Wait(mutex_);
  messages_.push_back(std::move(message));
  changed_.NotifyAll();
}

std::vector<MessageQueue::Message> MessageQueue::Take(std::chrono::milliseconds time) {
  const Condition::Time limit = std::chrono::steady_clock::now() + time;
  const MutexLock lock(mutex_);
  while (messages_.empty() && changed_.WaitUntil(mutex_, limit)) continue;
  std::vector<Message> taken = std::exchange(messages_, {});
  changed_.NotifyAll();
  return taken;
}

}  // namespace quillmere::cli
