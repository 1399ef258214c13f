// SPDX-License-Identifier: MIT
#include "datasources/shared_text.h"

#include <cstring>
#include <new>

namespace quillmere {

SharedText::SharedText(std::string_view text) {
  if (text.empty()) return;
  char* const memory = static_cast<char*>(::operator new(sizeof(Block) + text.size()));
  block_ = new (memory) Block{1, static_cast<std::uint32_t>(text.size())};
  std::memcpy(memory + sizeof(Block), text.data(), text.size());
}

void SharedText::Release() noexcept {
  if (block_->references.fetch_sub(1, std::memory_order_acq_rel) == 1) ::operator delete(block_);
}

SharedText TextPool::Share(std::string_view text) {
  const auto found = texts_.find(text);
  return found != texts_.end() ? *found : *texts_.emplace(text).first;
}

SharedText TextRounds::Share(std::string_view text) {
  if (latest_ == text) return latest_;
  if (next_ == order_.size()) order_.emplace_back(text);
  if (order_[next_] == text) {
    latest_ = order_[next_++];
  } else {
    latest_ = SharedText(text);
  }
  return latest_;
}

}  // namespace quillmere
