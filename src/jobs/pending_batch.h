// SPDX-License-Identifier: MIT
// The statements of a job's current batch, in capture order. Texts lie end to end in large blocks,
// so an entry costs 16 bytes above its text. Belongs to the thread that runs the job.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string_view>

#include "foundation/byte_arena.h"

namespace quillmere {

class PendingBatch {
 public:
  enum class Kind : std::uint8_t {
    Statement,
    SetAside,  // counts as blocked and is never executed; has no text
  };

  struct Entry {
    Kind kind = Kind::Statement;
    std::string_view text;  // valid until Clear
  };

  PendingBatch() = default;
  PendingBatch(PendingBatch&&) = default;
  PendingBatch& operator=(PendingBatch&&) = default;

  // Copies the statement. Earlier texts stay where they are.
  void Append(std::string_view statement);
  void AppendSetAside();

  std::size_t Size() const { return entries_.size(); }
  bool Empty() const { return entries_.empty(); }
  Entry operator[](std::size_t index) const { return entries_[index].Unpacked(); }

  // Gives the memory back.
  void Clear();

 private:
  // The kind stands in the lowest byte of the size.
  struct Packed {
    static constexpr unsigned kKindBits = 8;

    Packed(Kind kind, std::string_view text)
        : text_(text.data()),
          size_and_kind_(std::uint64_t{text.size()} << kKindBits |
                         static_cast<std::uint8_t>(kind)) {}
    Entry Unpacked() const {
      return {static_cast<Kind>(size_and_kind_ & 0xff), {text_, size_and_kind_ >> kKindBits}};
    }

    const char* text_;
    std::uint64_t size_and_kind_;
  };
  static_assert(sizeof(Packed) == 16);

  std::deque<Packed> entries_;
  ByteArena texts_;
};

}  // namespace quillmere
