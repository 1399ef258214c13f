// SPDX-License-Identifier: MIT
// The statements of a job's current batch, in capture order. Texts lie end to end in large blocks,
// so an entry costs 16 bytes above its text. Belongs to the thread that runs the job.
#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <string_view>

#include "foundation/byte_arena.h"
#include "jobs/transaction_marks.h"

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

  using Transaction = TransactionMark;

  // The commit SCNs that a batch of whole transactions was taken from: from <= SCN < upto.
  struct Range {
    std::int64_t from = 0;
    std::int64_t upto = 0;
    auto operator<=>(const Range&) const = default;
  };

  PendingBatch() = default;
  PendingBatch(PendingBatch&&) = default;
  PendingBatch& operator=(PendingBatch&&) = default;

  // Copies the statement. Earlier texts stay where they are.
  void Append(std::string_view statement);
  void AppendSetAside();

  // In two steps: the copy, which stays where it is, and later the entry made of it.
  std::string_view Store(std::string_view statement) { return texts_.Copy(statement); }
  void AppendStored(std::string_view stored);

  // What is appended from now on belongs to this transaction; first is filled in.
  void BeginTransaction(Transaction transaction);
  // None in a batch that was taken by rows.
  const TransactionMarks& Transactions() const { return transactions_; }
  void SetRange(Range range) { range_ = range; }
  const std::optional<Range>& TakenFrom() const { return range_; }

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
  TransactionMarks transactions_;
  std::optional<Range> range_;
  ByteArena texts_;
};

}  // namespace quillmere
