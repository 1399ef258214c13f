// SPDX-License-Identifier: MIT
// Memory that is only ever given back as a whole: small pieces are cut from large blocks, so that a
// piece costs its own bytes and no call of the allocator. Pieces never move.
#pragma once

#include <cstddef>
#include <memory>
#include <string_view>
#include <vector>

namespace quillmere {

// One thread at a time.
class ByteArena {
 public:
  // Uninitialised memory, valid until Clear.
  void* Allocate(std::size_t bytes, std::size_t alignment) {
    const std::size_t begin = (used_ + alignment - 1) & ~(alignment - 1);
    if (begin > size_ || bytes > size_ - begin) return AllocateSlow(bytes);
    used_ = begin + bytes;
    return block_ + begin;
  }

  std::string_view Copy(std::string_view text);

  void Clear();

  // Bytes taken from the system.
  std::size_t Footprint() const { return footprint_; }

 private:
  void* AllocateSlow(std::size_t bytes);

  std::vector<std::unique_ptr<char[]>> blocks_;
  char* block_ = nullptr;  // the block that pieces are cut from
  std::size_t used_ = 0;
  std::size_t size_ = 0;
  std::size_t footprint_ = 0;
};

}  // namespace quillmere
