// SPDX-License-Identifier: MIT
// Text that never changes and is shared by its copies. A cached catalogue repeats each owner, table
// and status thousands of times: here a copy is a pointer.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <ostream>
#include <string>
#include <string_view>
#include <unordered_set>
#include <utility>
#include <vector>

namespace quillmere {

// A value: any thread may copy one that no other thread is changing.
class SharedText {
 public:
  SharedText() = default;
  SharedText(std::string_view text);
  SharedText(const std::string& text) : SharedText(std::string_view(text)) {}
  SharedText(const char* text) : SharedText(std::string_view(text)) {}

  SharedText(const SharedText& other) noexcept : block_(other.block_) {
    if (block_ != nullptr) block_->references.fetch_add(1, std::memory_order_relaxed);
  }
  SharedText(SharedText&& other) noexcept : block_(std::exchange(other.block_, nullptr)) {}
  SharedText& operator=(SharedText other) noexcept {
    std::swap(block_, other.block_);
    return *this;
  }
  ~SharedText() {
    if (block_ != nullptr) Release();
  }

  std::string_view View() const {
    if (block_ == nullptr) return {};
    return {reinterpret_cast<const char*>(block_ + 1), block_->size};
  }
  operator std::string_view() const { return View(); }
  std::string String() const { return std::string(View()); }
  bool empty() const { return block_ == nullptr; }

  friend bool operator==(const SharedText& a, const SharedText& b) { return a.View() == b.View(); }
  friend bool operator==(const SharedText& a, std::string_view b) { return a.View() == b; }
  friend bool operator==(const SharedText& a, const std::string& b) { return a.View() == b; }
  friend bool operator==(const SharedText& a, const char* b) { return a.View() == b; }
  friend std::ostream& operator<<(std::ostream& out, const SharedText& text) {
    return out << text.View();
  }

 private:
  // The text stands behind it. Empty texts have none.
  struct Block {
    std::atomic<std::uint32_t> references;
    std::uint32_t size;
  };

  void Release() noexcept;

  Block* block_ = nullptr;
};

// Gives equal texts one memory, as long as the pool lives; they may outlive it.
class TextPool {
 public:
  SharedText Share(std::string_view text);

 private:
  struct Hash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const {
      return std::hash<std::string_view>()(text);
    }
  };
  struct Equal {
    using is_transparent = void;
    bool operator()(std::string_view a, std::string_view b) const { return a == b; }
  };

  std::unordered_set<SharedText, Hash, Equal> texts_;
};

// The same for texts that come in nearly the same order in several rounds, without a look-up: the
// table names in the lists of one data source. What comes out of order gets a memory of its own.
class TextRounds {
 public:
  void StartRound() { next_ = 0; }
  SharedText Share(std::string_view text);

 private:
  std::vector<SharedText> order_;
  std::size_t next_ = 0;  // in order_: what was not yet met in this round
  SharedText latest_;
};

}  // namespace quillmere
