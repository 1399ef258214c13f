// SPDX-License-Identifier: MIT
#include "foundation/byte_arena.h"

#include <algorithm>
#include <cstring>

namespace quillmere {

namespace {

constexpr std::size_t kFirstBlock = std::size_t{4} << 10;
constexpr std::size_t kLargestBlock = std::size_t{256} << 10;

}  // namespace

void* ByteArena::AllocateSlow(std::size_t bytes) {
  const std::size_t next = std::clamp(size_ * 2, kFirstBlock, kLargestBlock);
  // A piece that would waste much of a block gets one of its own; the current one stays in use.
  const bool own_block = bytes > next / 4;
  const std::size_t size = own_block ? bytes : next;
  blocks_.push_back(std::make_unique_for_overwrite<char[]>(size));
  footprint_ += size;
  char* memory = blocks_.back().get();
  if (own_block) return memory;
  block_ = memory;
  size_ = size;
  used_ = bytes;
  return memory;
}

std::string_view ByteArena::Copy(std::string_view text) {
  if (text.empty()) return {};
  char* copy = static_cast<char*>(Allocate(text.size(), 1));
  std::memcpy(copy, text.data(), text.size());
  return {copy, text.size()};
}

void ByteArena::Clear() {
  blocks_.clear();
  blocks_.shrink_to_fit();
  block_ = nullptr;
  used_ = size_ = footprint_ = 0;
}

}  // namespace quillmere
