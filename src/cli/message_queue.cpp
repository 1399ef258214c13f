#include "cli/message_queue.h"

#include <utility>

namespace quillmere::cli {

void MessageQueue::Put(std::string_view text, bool error) {
  std::unique_lock lock(mutex_);
  changed_.wait(lock, [this] { return messages_.size() < capacity_; });
  messages_.push_back({std::string(text), error});
  changed_.notify_all();
}

std::vector<MessageQueue::Message> MessageQueue::Take(std::chrono::milliseconds time) {
  std::unique_lock lock(mutex_);
  changed_.wait_for(lock, time, [this] { return !messages_.empty(); });
  std::vector<Message> taken = std::exchange(messages_, {});
  changed_.notify_all();
  return taken;
}

}  // namespace quillmere::cli
