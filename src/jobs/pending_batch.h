// The statements of a job's current batch, in capture order. Texts lie end to end in large blocks,
// so a statement costs 16 bytes above its text. Belongs to the thread that runs the job.
#pragma once

#include <cstddef>
#include <deque>
#include <string_view>

#include "foundation/byte_arena.h"

namespace quillmere {

class PendingBatch {
 public:
  PendingBatch() = default;
  PendingBatch(PendingBatch&&) = default;
  PendingBatch& operator=(PendingBatch&&) = default;

  // Copies the statement. Earlier views stay valid.
  void Append(std::string_view statement);

  std::size_t Size() const { return statements_.size(); }
  bool Empty() const { return statements_.empty(); }

  // Valid until Clear.
  std::string_view operator[](std::size_t index) const { return statements_[index]; }

  // Gives the memory back.
  void Clear();

 private:
  std::deque<std::string_view> statements_;
  ByteArena texts_;
};

}  // namespace quillmere
